#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace lumaphone::test {

/// One request as it came over the wire.
struct RecordedRequest
{
    QByteArray bytes; ///< head and body, byte for byte
    QByteArray requestLine; ///< such as "POST /v1/chat/completions HTTP/1.1"
    QList<std::pair<QByteArray, QByteArray>> headers; ///< names as they were sent
    QByteArray body;

    /// The value of a header whose name is compared without regard to case; null without it.
    QByteArray header(const QByteArray &name) const;
    bool hasHeader(const QByteArray &name) const { return !header(name).isNull(); }
};

/// A local HTTP server that answers each request as a script says, also in ways no server should.
/// It shares the event loop of its client.
class MisbehavingHttpServer
{
public:
    /// Answers one complete request; the connection stays open until the behaviour, or the client, closes it.
    using Behaviour = std::function<void(QTcpSocket &connection, const RecordedRequest &request)>;

    /// Listens on 127.0.0.1, on a port of the system's choice. A server of one's own, such as one that
    /// speaks TLS, can be handed in; it must not listen yet.
    explicit MisbehavingHttpServer(std::unique_ptr<QTcpServer> server = std::make_unique<QTcpServer>());

    quint16 port() const { return m_server->serverPort(); }
    /// Such as http://127.0.0.1:4711/v1, for the path "/v1".
    QString url(const QString &path = {}) const;

    /// Appends the behaviour for the next request that has none. The last one of all is used again and again.
    void thenAnswer(Behaviour behaviour) { m_script.push_back(std::move(behaviour)); }

    /// The behaviour for every further request.
    void alwaysAnswer(Behaviour behaviour) { m_script = {std::move(behaviour)}; }

    const QList<RecordedRequest> &requests() const { return m_requests; }
    /// Connections accepted so far, and those still open.
    int connections() const { return m_connections; }
    int openConnections() const;
    /// Bytes of responses that clients have taken.
    qint64 bytesWritten() const { return m_bytesWritten; }
    /// Accepts no further connection: the port then refuses.
    void close() { m_server->close(); }

private:
    struct Connection;

    void accept();
    void read(const std::shared_ptr<Connection> &connection);
    Behaviour nextBehaviour();

    std::unique_ptr<QTcpServer> m_server;
    std::deque<Behaviour> m_script;
    QList<RecordedRequest> m_requests;
    std::vector<QPointer<QTcpSocket>> m_sockets;
    int m_connections = 0;
    qint64 m_bytesWritten = 0;
};

/// The parts that most behaviours are made of.
namespace behaviour {

using Headers = QList<std::pair<QByteArray, QByteArray>>;

/// A well-formed response with Content-Length.
MisbehavingHttpServer::Behaviour respond(int status, QByteArray body, Headers headers = {});
/// A well-formed chat completion with one choice.
MisbehavingHttpServer::Behaviour complete(const QString &content);
/// The body of a chat completion with one choice.
QByteArray completionBody(const QString &content);
/// The same response in pieces, each sent after `pause`.
MisbehavingHttpServer::Behaviour dribble(
    QByteArray head, QList<QByteArray> pieces, std::chrono::milliseconds pause);
/// These bytes and nothing else; the connection stays open.
MisbehavingHttpServer::Behaviour sendRaw(QByteArray bytes);
/// These bytes, then the end of the connection.
MisbehavingHttpServer::Behaviour sendRawAndClose(QByteArray bytes);
/// Nothing at all: the connection stays open.
MisbehavingHttpServer::Behaviour stayMute();

} // namespace behaviour

} // namespace lumaphone::test
