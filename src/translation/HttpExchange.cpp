#include "translation/HttpExchange.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

#include <algorithm>

namespace lumaphone {

namespace {

constexpr qint64 readBufferBytes = 64LL * 1024;

bool isSuccess(int status)
{
    return status >= 200 && status <= 299;
}

/// Qt reports a status from 400 on as an error of its own; the response is there all the same.
bool isStatusError(QNetworkReply::NetworkError error)
{
    return error > QNetworkReply::UnknownNetworkError;
}

/// At most `size` bytes, without the beginning of a UTF-8 sequence that would be cut in two.
QByteArray cutBetweenCharacters(const QByteArray &bytes, qsizetype size)
{
    if (bytes.size() <= size) {
        return bytes;
    }
    while (size > 0 && (static_cast<unsigned char>(bytes[size]) & 0xC0U) == 0x80U) {
        --size;
    }
    return bytes.first(size);
}

} // namespace

HttpExchange::HttpExchange(std::shared_ptr<MainQueue> mainQueue, QNetworkAccessManager &manager,
    const QNetworkRequest &request, const QByteArray &body, HttpLimits limits)
    : m_limits(limits)
    , m_completion(std::move(mainQueue))
    , m_request(body)
    , m_reply(manager.post(request, &m_request))
{
    // What the network delivers faster than it is read waits in the socket, not in memory.
    m_reply->setReadBufferSize(readBufferBytes);
    QObject::connect(m_reply.get(), &QNetworkReply::readyRead, m_reply.get(), [this] { readBody(); });
    QObject::connect(m_reply.get(), &QNetworkReply::finished, m_reply.get(), [this] { finish(); });
    m_deadline.setSingleShot(true);
    m_deadline.callOnTimeout([this] { abort(TransportError::Reason::timedOut); });
    m_deadline.start(m_limits.timeout);
}

void HttpExchange::abort(TransportError::Reason reason)
{
    if (!m_hasEnded) {
        m_abortReason = reason;
        end();
    }
}

void HttpExchange::readBody()
{
    if (m_hasEnded || !m_reply->isReadable()) {
        return;
    }
    m_body += m_reply->readAll();
    if (m_body.size() > m_limits.maximumBodyBytes) {
        end();
    }
}

void HttpExchange::finish()
{
    readBody();
    if (!m_hasEnded) {
        end();
    }
}

void HttpExchange::end()
{
    // The reply may be going on: its connection ends with this object, once the answer has been received.
    m_hasEnded = true;
    m_deadline.stop();
    try {
        m_completion.resolve(outcome());
    } catch (const TransportError &) {
        m_completion.fail(std::current_exception());
    }
}

TransportError HttpExchange::timedOut() const
{
    return TransportError::timedOut(
        m_reply->url(), std::chrono::milliseconds(m_reply->request().transferTimeout()));
}

HttpReply HttpExchange::outcome() const
{
    if (m_abortReason == TransportError::Reason::cancelled) {
        throw TransportError::cancelled();
    }
    if (m_abortReason == TransportError::Reason::timedOut) {
        throw timedOut();
    }
    const QVariant statusAttribute = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const std::optional<int> status
        = statusAttribute.isValid() ? std::optional(statusAttribute.toInt()) : std::nullopt;
    HttpReply reply {status, m_body, m_reply->rawHeader("Location")};
    if (m_body.size() > m_limits.maximumBodyBytes) {
        if (!status || isSuccess(*status)) {
            throw TransportError::responseTooLarge(m_reply->url(), m_limits.maximumBodyBytes);
        }
        reply.body = cutBetweenCharacters(m_body, m_limits.maximumBodyBytes);
        return reply;
    }
    const QNetworkReply::NetworkError error = m_reply->error();
    if (error == QNetworkReply::NoError || (status && *status >= 400 && isStatusError(error))) {
        return reply;
    }
    if (error == QNetworkReply::OperationCanceledError) { // nobody aborted it: the library's own time-out
        throw timedOut();
    }
    if (m_request.wasReadAgain() || (error == QNetworkReply::RemoteHostClosedError && !status)) {
        throw TransportError::closedUnanswered(m_reply->url());
    }
    throw TransportError::connectionFailed(m_reply->errorString());
}

} // namespace lumaphone
