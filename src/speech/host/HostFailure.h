#pragma once

#include "speech/protocol/SpeechHostMessages.h"

#include <stdexcept>

namespace lumaphone::host {

/// What ends the host, as it is reported.
class HostFailure : public std::runtime_error
{
public:
    HostFailure(FailureKind kind, const std::string &detail)
        : std::runtime_error(detail)
        , m_kind(kind)
    {
    }

    FailureKind kind() const { return m_kind; }

private:
    FailureKind m_kind;
};

} // namespace lumaphone::host
