#include "support/FileServer.h"

#include <QUrl>

namespace lumaphone::test {

namespace {

QByteArray pathOf(const RecordedRequest &request)
{
    return QByteArray::fromPercentEncoding(request.requestLine.split(' ').value(1));
}

} // namespace

FileServer::FileServer()
{
    m_server.alwaysAnswer(
        [this](QTcpSocket &connection, const RecordedRequest &request) { answer(connection, request); });
}

QList<RecordedRequest> FileServer::requestsFor(const QString &path) const
{
    QList<RecordedRequest> found;
    for (const RecordedRequest &request : requests()) {
        if (pathOf(request) == path.toUtf8()) {
            found.append(request);
        }
    }
    return found;
}

void FileServer::answer(QTcpSocket &connection, const RecordedRequest &request)
{
    const auto file = m_files.constFind(pathOf(request));
    if (status || file == m_files.constEnd()) {
        behaviour::respond(status.value_or(404), "no such file")(connection, request);
        return;
    }
    qint64 first = 0;
    const QByteArray range = request.header("Range");
    const bool isSame = request.header("If-Range") == tag;
    if (knowsRanges && range.startsWith("bytes=") && isSame) {
        first = range.mid(6).chopped(1).toLongLong();
    }
    if (first > 0 && first >= file->size()) {
        behaviour::respond(416, {})(connection, request);
        return;
    }
    QByteArray head = first > 0 ? "HTTP/1.1 206 Partial Content\r\n" : "HTTP/1.1 200 OK\r\n";
    if (first > 0) {
        head += "Content-Range: bytes " + QByteArray::number(first) + '-'
            + QByteArray::number(file->size() - 1) + '/' + QByteArray::number(file->size()) + "\r\n";
    }
    if (!tag.isEmpty()) {
        head += "ETag: " + tag + "\r\n";
    }
    QByteArray body = file->mid(first);
    head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n";
    if (muteAfter) {
        connection.write(head + body.left(*muteAfter));
        return;
    }
    if (cuts > 0) {
        --cuts;
        connection.write(head + body.left(cutAfter));
        connection.disconnectFromHost();
        return;
    }
    connection.write(head + body);
}

} // namespace lumaphone::test
