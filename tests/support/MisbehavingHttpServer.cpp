#include "support/MisbehavingHttpServer.h"

#include <QTimer>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <utility>

namespace lumaphone::test {

namespace {

const QByteArray endOfHead = "\r\n\r\n";

RecordedRequest parsedHead(const QByteArray &head)
{
    RecordedRequest request;
    QList<QByteArray> lines = head.split('\n');
    for (QByteArray &line : lines) {
        if (line.endsWith('\r')) {
            line.chop(1);
        }
    }
    request.requestLine = lines.takeFirst();
    for (const QByteArray &line : std::as_const(lines)) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0) {
            request.headers.append({line.first(colon), line.sliced(colon + 1).trimmed()});
        }
    }
    return request;
}

/// Takes the first complete request out of `received`, if it is there.
std::optional<RecordedRequest> takeRequest(QByteArray &received)
{
    const qsizetype headEnd = received.indexOf(endOfHead);
    if (headEnd < 0) {
        return std::nullopt;
    }
    RecordedRequest request = parsedHead(received.first(headEnd));
    const qsizetype bodyStart = headEnd + endOfHead.size();
    const qsizetype length = bodyStart + request.header("Content-Length").toLongLong();
    if (received.size() < length) {
        return std::nullopt;
    }
    request.bytes = received.first(length);
    request.body = request.bytes.sliced(bodyStart);
    received.remove(0, length);
    return request;
}

} // namespace

QByteArray RecordedRequest::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value.isNull() ? QByteArray("") : value;
        }
    }
    return {};
}

struct MisbehavingHttpServer::Connection
{
    QTcpSocket *socket;
    QByteArray received;
};

MisbehavingHttpServer::MisbehavingHttpServer(std::unique_ptr<QTcpServer> server)
    : m_server(std::move(server))
{
    QObject::connect(
        m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(), [this] { accept(); });
    if (!m_server->listen(QHostAddress::LocalHost)) {
        qFatal("The test server cannot listen: %s", qPrintable(m_server->errorString()));
    }
}

QString MisbehavingHttpServer::url(const QString &path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(QString::number(port()), path);
}

int MisbehavingHttpServer::openConnections() const
{
    return static_cast<int>(std::count_if(m_sockets.begin(), m_sockets.end(),
        [](const auto &socket) { return socket && socket->state() == QAbstractSocket::ConnectedState; }));
}

void MisbehavingHttpServer::accept()
{
    while (QTcpSocket *socket = m_server->nextPendingConnection()) {
        ++m_connections;
        m_sockets.emplace_back(socket);
        const auto connection = std::make_shared<Connection>(Connection {socket, {}});
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, connection] { read(connection); });
        QObject::connect(
            socket, &QTcpSocket::bytesWritten, socket, [this](qint64 count) { m_bytesWritten += count; });
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        read(connection); // a TLS handshake may have delivered bytes already
    }
}

void MisbehavingHttpServer::read(const std::shared_ptr<Connection> &connection)
{
    connection->received += connection->socket->readAll();
    while (const auto request = takeRequest(connection->received)) {
        m_requests.append(*request);
        nextBehaviour()(*connection->socket, *request);
    }
}

MisbehavingHttpServer::Behaviour MisbehavingHttpServer::nextBehaviour()
{
    if (m_script.empty()) {
        qFatal("The test server was not told how to answer");
    }
    if (m_script.size() == 1) {
        return m_script.front();
    }
    Behaviour next = std::move(m_script.front());
    m_script.pop_front();
    return next;
}

namespace behaviour {

namespace {

/// Writes the remaining pieces one by one, each after a pause, as long as the connection lives.
void writePieces(QTcpSocket *connection, QList<QByteArray> pieces, std::chrono::milliseconds pause)
{
    if (pieces.isEmpty()) {
        return;
    }
    QTimer::singleShot(pause, connection, [connection, pieces, pause]() mutable {
        connection->write(pieces.takeFirst());
        writePieces(connection, std::move(pieces), pause);
    });
}

} // namespace

QByteArray completionBody(const QString &content)
{
    const nlohmann::json body {{"id", "chatcmpl-1"},
        {"choices",
            {{{"index", 0}, {"message", {{"role", "assistant"}, {"content", content.toStdString()}}}}}}};
    return QByteArray::fromStdString(body.dump());
}

MisbehavingHttpServer::Behaviour respond(int status, QByteArray body, Headers headers)
{
    QByteArray bytes = "HTTP/1.1 " + QByteArray::number(status) + " Scripted\r\n";
    for (const auto &[name, value] : headers) {
        bytes += name + ": " + value + "\r\n";
    }
    bytes += "Content-Length: " + QByteArray::number(body.size()) + endOfHead + body;
    return sendRaw(bytes);
}

MisbehavingHttpServer::Behaviour complete(const QString &content)
{
    return respond(200, completionBody(content), {{"Content-Type", "application/json"}});
}

MisbehavingHttpServer::Behaviour dribble(
    QByteArray head, QList<QByteArray> pieces, std::chrono::milliseconds pause)
{
    return [head, pieces, pause](QTcpSocket &connection, const RecordedRequest &) {
        connection.write(head);
        writePieces(&connection, pieces, pause);
    };
}

MisbehavingHttpServer::Behaviour sendRaw(QByteArray bytes)
{
    return [bytes](QTcpSocket &connection, const RecordedRequest &) {
        connection.write(bytes);
    };
}

MisbehavingHttpServer::Behaviour sendRawAndClose(QByteArray bytes)
{
    return [bytes](QTcpSocket &connection, const RecordedRequest &) {
        connection.write(bytes);
        connection.disconnectFromHost();
    };
}

MisbehavingHttpServer::Behaviour stayMute()
{
    return [](QTcpSocket &, const RecordedRequest &) {
    };
}

} // namespace behaviour

} // namespace lumaphone::test
