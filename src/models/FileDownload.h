#pragma once

#include "base/Completion.h"
#include "models/ModelError.h"
#include "models/ModelFileStreams.h"

#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;

namespace lumaphone {

/// Bytes that are in the file, of how many if the server says so.
using DownloadProgress = std::function<void(qint64 received, std::optional<qint64> total)>;

/// One file fetched over HTTP, from its beginning to its end. What an earlier attempt has left at `path` is
/// continued if the server still has the same file and can send a part of it; a second file beside it,
/// "<path>.json", remembers which file that was. Main thread.
class FileDownload
{
public:
    /// Begins at once. `manager` outlives the download. A server that sends nothing for `stallTimeout` has
    /// stalled. Throws FileError.
    FileDownload(std::shared_ptr<MainQueue> mainQueue, QNetworkAccessManager &manager, const QUrl &url,
        const QString &path, std::chrono::milliseconds stallTimeout, DownloadProgress onProgress);
    FileDownload(const FileDownload &) = delete;
    FileDownload &operator=(const FileDownload &) = delete;
    ~FileDownload();

    /// To be awaited once; the whole file is at `path` then. Throws ModelError, FileError.
    Completion<> finished() const { return m_completion; }

    /// Ends the download with ModelError (cancelled). Without effect when it has ended already.
    void cancel();

private:
    void send(qint64 continuedAt, const QByteArray &validator);
    /// Runs a step; what it throws ends the download.
    template<typename Step> void guarded(Step step);
    /// False if the answer has to be asked for again.
    bool readHead();
    void readBody();
    void finish();
    void fail(ModelError::Case errorCase, const QString &detail = {});
    void end();

    Completion<> m_completion;
    QNetworkAccessManager &m_manager;
    QUrl m_url;
    QString m_path;
    DownloadProgress m_onProgress;
    QTimer m_stall;
    std::unique_ptr<QNetworkReply> m_reply;
    std::optional<ModelFileWriter> m_file;
    qint64 m_continuedAt = 0;
    std::optional<qint64> m_total;
    bool m_hasHead = false;
    bool m_hasEnded = false;
};

} // namespace lumaphone
