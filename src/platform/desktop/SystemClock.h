#pragma once

#include "platform/Clock.h"

namespace lumaphone {

/// The machine's clocks.
class SystemClock final : public Clock
{
public:
    QDateTime now() const override;
    std::chrono::nanoseconds monotonic() const override;
    QCoro::Task<> sleepFor(std::chrono::nanoseconds duration) override;
};

} // namespace lumaphone
