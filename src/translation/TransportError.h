#pragma once

#include "base/LocalizedError.h"

#include <QUrl>

#include <chrono>

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
        nameInAddress, ///< with user or password, which would be sent beside the key
        unusableKey, ///< the key holds line breaks or other control characters
        closedUnanswered, ///< the server ended the connection instead of answering
        connectionFailed, ///< refused, unreachable, cut, not trusted, not HTTP: the text says which
    };

    static TransportError cancelled();
    static TransportError timedOut(const QUrl &address, std::chrono::milliseconds timeout);
    static TransportError responseTooLarge(const QUrl &address, qint64 maximumBytes);
    static TransportError unsupportedAddress(const QUrl &address);
    static TransportError nameInAddress(const QUrl &address);
    static TransportError unusableKey();
    static TransportError closedUnanswered(const QUrl &address);
    /// With the text of the network library.
    static TransportError connectionFailed(const QString &description);

    Reason reason() const noexcept { return m_reason; }

private:
    TransportError(Reason reason, const QString &description);

    Reason m_reason;
};

} // namespace lumaphone
