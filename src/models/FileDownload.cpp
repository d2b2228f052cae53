#include "models/FileDownload.h"

#include "base/AtomicFile.h"
#include "base/Json.h"

#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QRegularExpression>

#include <utility>

namespace lumaphone {

namespace {

constexpr qint64 readBufferBytes = 256LL * 1024;

enum HttpStatus { httpOk = 200, httpPartialContent = 206, httpRangeNotSatisfiable = 416 };

QString notePath(const QString &path)
{
    return path + QStringLiteral(".json");
}

/// What tells this file from a later one at the same address; empty if the server gives nothing.
QByteArray validatorOf(const QNetworkReply &reply)
{
    const QByteArray tag = reply.rawHeader("ETag");
    return tag.isEmpty() || tag.startsWith("W/") ? reply.rawHeader("Last-Modified") : tag;
}

void note(const QString &path, const QUrl &url, const QByteArray &validator)
{
    if (validator.isEmpty()) {
        removeFile(notePath(path));
        return;
    }
    const json::Value object {{"url", json::fromText(url.toString())},
        {"validator", json::fromText(QString::fromLatin1(validator))}};
    replaceFile(notePath(path), json::pretty(object), Durability::renamed);
}

/// The validator of what an earlier attempt has left; empty if it cannot be continued.
QByteArray notedValidator(const QString &path, const QUrl &url)
{
    try {
        const std::optional<QByteArray> bytes = readFile(notePath(path));
        if (!bytes) {
            return {};
        }
        const json::Value object = json::parse(*bytes);
        return json::text(object, "url") == url.toString() ? json::text(object, "validator").toLatin1()
                                                           : QByteArray();
    } catch (const LocalizedError &) {
        return {};
    }
}

struct ContentRange
{
    qint64 first;
    qint64 total;
};

std::optional<ContentRange> contentRangeOf(const QNetworkReply &reply)
{
    static const QRegularExpression form(QStringLiteral(R"(^bytes (\d+)-\d+/(\d+)$)"));
    const auto match = form.match(QString::fromLatin1(reply.rawHeader("Content-Range")));
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    return ContentRange {match.capturedView(1).toLongLong(), match.capturedView(2).toLongLong()};
}

std::optional<int> statusOf(const QNetworkReply &reply)
{
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    return status.isValid() ? std::optional(status.toInt()) : std::nullopt;
}

} // namespace

FileDownload::FileDownload(std::shared_ptr<MainQueue> mainQueue, QNetworkAccessManager &manager,
    const QUrl &url, const QString &path, std::chrono::milliseconds stallTimeout, DownloadProgress onProgress)
    : m_completion(std::move(mainQueue))
    , m_manager(manager)
    , m_url(url)
    , m_path(path)
    , m_onProgress(std::move(onProgress))
{
    m_stall.setSingleShot(true);
    m_stall.setInterval(stallTimeout);
    m_stall.callOnTimeout([this] { fail(ModelError::Case::stalled); });
    const qint64 present = QFileInfo(path).size();
    const QByteArray validator = present > 0 ? notedValidator(path, url) : QByteArray();
    send(validator.isEmpty() ? 0 : present, validator);
}

FileDownload::~FileDownload() = default;

void FileDownload::cancel()
{
    fail(ModelError::Case::cancelled);
}

void FileDownload::send(qint64 continuedAt, const QByteArray &validator)
{
    QNetworkRequest request(m_url);
    // The bytes as they are published: hashes are taken of those.
    request.setRawHeader("Accept-Encoding", "identity");
    if (continuedAt > 0) {
        request.setRawHeader("Range", "bytes=" + QByteArray::number(continuedAt) + '-');
        request.setRawHeader("If-Range", validator);
    }
    m_continuedAt = continuedAt;
    m_hasHead = false;
    m_reply.reset(m_manager.get(request));
    m_reply->setReadBufferSize(readBufferBytes);
    QObject::connect(
        m_reply.get(), &QNetworkReply::readyRead, m_reply.get(), [this] { guarded([this] { readBody(); }); });
    QObject::connect(
        m_reply.get(), &QNetworkReply::finished, m_reply.get(), [this] { guarded([this] { finish(); }); });
    m_stall.start();
}

template<typename Step> void FileDownload::guarded(Step step)
{
    if (m_hasEnded) {
        return;
    }
    try {
        step();
    } catch (...) {
        m_completion.fail(std::current_exception());
        end();
    }
}

bool FileDownload::readHead()
{
    if (m_hasHead) {
        return true;
    }
    const int status = *statusOf(*m_reply);
    const std::optional<ContentRange> range = contentRangeOf(*m_reply);
    const bool continues
        = status == httpPartialContent && m_continuedAt > 0 && range && range->first == m_continuedAt;
    const bool isUnasked = status == httpPartialContent && !continues;
    if (m_continuedAt > 0 && (status == httpRangeNotSatisfiable || isUnasked)) {
        // What is here is of no use to this server: from the start.
        m_reply->disconnect();
        m_reply.release()->deleteLater();
        send(0, {});
        return false;
    }
    if (isUnasked || (status != httpOk && !continues)) {
        fail(ModelError::Case::refused, QString::number(status));
        return false;
    }
    if (continues) {
        m_total = range->total;
        m_file.emplace(m_path, ModelFileWriter::Start::behindTheEnd);
    } else {
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        m_total = length.isValid() ? std::optional(length.toLongLong()) : std::nullopt;
        removeFile(notePath(m_path));
        m_file.emplace(m_path, ModelFileWriter::Start::fromScratch);
        note(m_path, m_url, validatorOf(*m_reply));
    }
    m_hasHead = true;
    return true;
}

void FileDownload::readBody()
{
    m_stall.start();
    if (!m_reply->isReadable() || !statusOf(*m_reply) || !readHead()) {
        return;
    }
    m_file->write(m_reply->readAll());
    if (m_onProgress) {
        m_onProgress(m_file->size(), m_total);
    }
}

void FileDownload::finish()
{
    const std::optional<int> status = statusOf(*m_reply);
    if (!status) {
        fail(ModelError::Case::unreachable, m_reply->errorString());
        return;
    }
    if (!readHead()) {
        return;
    }
    readBody();
    const bool isWhole = !m_total || m_file->size() == *m_total;
    if (m_reply->error() != QNetworkReply::NoError || !isWhole) {
        fail(ModelError::Case::interrupted);
        return;
    }
    m_file->finish();
    m_completion.resolve();
    end();
}

void FileDownload::fail(ModelError::Case errorCase, const QString &detail)
{
    guarded([&] { throw ModelError(errorCase, m_url.fileName(), detail); });
}

void FileDownload::end()
{
    // The reply may be going on: its connection ends with this object.
    m_hasEnded = true;
    m_stall.stop();
    m_file.reset();
}

} // namespace lumaphone
