#pragma once

#include "support/MisbehavingHttpServer.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

namespace lumaphone::test {

/// A local HTTP server with files, which it also serves in ways that a download has to survive.
class FileServer
{
public:
    FileServer();

    void put(const QString &path, const QByteArray &bytes) { m_files[path.toUtf8()] = bytes; }
    QString url(const QString &path) const { return m_server.url(path); }
    const QList<RecordedRequest> &requests() const { return m_server.requests(); }
    QList<RecordedRequest> requestsFor(const QString &path) const;

    QByteArray tag = "\"first\""; ///< ETag of every file; none if empty
    bool knowsRanges = true;
    /// Ends a connection after so many bytes of a body, for as many answers as `cuts` says.
    qint64 cutAfter = 0;
    int cuts = 0;
    /// Sends no more than so many bytes of a body and keeps the connection open.
    std::optional<qint64> muteAfter;
    std::optional<int> status; ///< instead of every file
    void close() { m_server.close(); }

private:
    void answer(QTcpSocket &connection, const RecordedRequest &request);

    MisbehavingHttpServer m_server;
    QHash<QByteArray, QByteArray> m_files;
};

} // namespace lumaphone::test
