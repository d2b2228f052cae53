#pragma once

#include "base/LocalizedError.h"

#include <memory>

namespace lumaphone {

/// Writes Mandarin in the characters and words of Taiwan. One thread at a time.
class TaiwanTraditional
{
public:
    /// Reads its dictionaries. Throws PlatformError if they are not installed.
    TaiwanTraditional();
    ~TaiwanTraditional();

    QString convert(const QString &text) const;

private:
    class Converter;
    std::unique_ptr<Converter> m_converter;
};

} // namespace lumaphone
