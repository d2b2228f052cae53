#pragma once

#include "base/LocalizedError.h"

namespace lumaphone {

/// A request that failed below HTTP, so that there is no status to report.
class TransportError : public PlatformError
{
public:
    enum class Reason {
        cancelled, ///< by the caller
        timedOut, ///< no complete response within the time-out
        responseTooLarge, ///< a successful response is longer than any translation
        unsupportedAddress, ///< neither http nor https
        unusableKey, ///< the key holds line breaks or other control characters
        connectionFailed, ///< refused, unreachable, cut, not trusted, not HTTP: the text says which
    };

    TransportError(Reason reason, const QString &description);

    Reason reason() const noexcept { return m_reason; }

private:
    Reason m_reason;
};

} // namespace lumaphone
