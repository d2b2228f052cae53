#pragma once

#include "base/Completion.h"
#include "translation/OneShotBody.h"
#include "translation/TransportError.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class QNetworkAccessManager;
class QNetworkRequest;

namespace lumaphone {

/// One response, whatever its status.
struct HttpReply
{
    std::optional<int> status; ///< none when what answered does not speak HTTP
    QByteArray body; ///< decompressed
    QByteArray location; ///< where a redirection points, else empty
};

struct HttpLimits
{
    std::chrono::milliseconds timeout; ///< for the whole exchange
    qint64 maximumBodyBytes; ///< a longer body of a status outside 200...299 is cut, any other is an error
};

/// One POST, from its beginning to its end. Redirections are not followed. Main thread.
class HttpExchange
{
public:
    /// Sends at once. `manager` outlives the exchange.
    HttpExchange(std::shared_ptr<MainQueue> mainQueue, QNetworkAccessManager &manager,
        const QNetworkRequest &request, const QByteArray &body, HttpLimits limits);
    HttpExchange(const HttpExchange &) = delete;
    HttpExchange &operator=(const HttpExchange &) = delete;

    /// To be awaited once. Throws TransportError.
    Completion<HttpReply> reply() const { return m_completion; }

    /// Ends the exchange with TransportError::Reason::cancelled. Without effect when it has ended already.
    void cancel() { abort(TransportError::Reason::cancelled); }

private:
    void abort(TransportError::Reason reason);
    void readBody();
    void finish();
    void end();
    HttpReply outcome() const;
    TransportError timedOut() const;

    HttpLimits m_limits;
    Completion<HttpReply> m_completion;
    OneShotBody m_request;
    std::unique_ptr<QNetworkReply> m_reply;
    QTimer m_deadline;
    QByteArray m_body;
    std::optional<TransportError::Reason> m_abortReason;
    bool m_hasEnded = false;
};

} // namespace lumaphone
