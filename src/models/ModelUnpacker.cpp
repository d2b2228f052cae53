#include "models/ModelUnpacker.h"

#include "models/FileDigest.h"
#include "models/ModelError.h"
#include "models/ModelFileStreams.h"

#include <QFileInfo>

#include <archive.h>
#include <archive_entry.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <limits>
#include <memory>

namespace lumaphone {

namespace {

/// No model that this program can use is larger.
constexpr qint64 mostBytes = 4LL * 1024 * 1024 * 1024;

/// What is not known beforehand is taken as it comes.
bool isRight(const QString &sha256, const QString &known)
{
    return known.isEmpty() || sha256 == known;
}

/// The source, which is hashed as it is read.
class Source
{
public:
    Source(
        const ModelDownload &download, const QString &path, UnpackProgress onProgress, std::stop_token stop)
        : m_download(download)
        , m_reader(path)
        , m_onProgress(std::move(onProgress))
        , m_stop(std::move(stop))
    {
    }

    QString name() const { return m_download.name(); }
    bool isGzip() { return m_reader.peek(2) == QByteArray::fromHex("1f8b"); }

    /// Empty at the end.
    QByteArrayView next()
    {
        if (m_stop.stop_requested()) {
            throw ModelError(ModelError::Case::cancelled, name());
        }
        const QByteArrayView block = m_reader.next();
        m_digest.add(block);
        if (m_onProgress) {
            m_onProgress(m_digest.size(), m_reader.size());
        }
        return block;
    }

    /// Reads what is left and returns the digest of it all.
    FileDigest finish()
    {
        while (!next().isEmpty()) {
        }
        return m_digest.result();
    }

private:
    const ModelDownload &m_download;
    ModelFileReader m_reader;
    RunningDigest m_digest;
    UnpackProgress m_onProgress;
    std::stop_token m_stop;
};

/// A file of the model as it is written.
class Target
{
public:
    Target(const ModelFile &file, const QString &folder)
        : m_file(file)
        , m_writer(folder + QLatin1Char('/') + file.name)
    {
    }

    void write(QByteArrayView bytes)
    {
        m_digest.add(bytes);
        if (const qint64 most = m_file.size.value_or(mostBytes); m_digest.size() > most) {
            demandSize(m_file.name, m_digest.size(), most);
        }
        m_writer.write(bytes);
    }

    RecordedFile finish()
    {
        m_writer.finish();
        const FileDigest digest = m_digest.result();
        demandSize(m_file.name, digest.size, m_file.size.value_or(digest.size));
        if (!isRight(digest.sha256, m_file.sha256)) {
            throw ModelError(ModelError::Case::wrongContents, m_file.name);
        }
        return {m_file.name, digest.size, digest.sha256};
    }

private:
    const ModelFile &m_file;
    ModelFileWriter m_writer;
    RunningDigest m_digest;
};

void checkSource(const ModelDownload &download, const QString &path)
{
    const qint64 actual = QFileInfo(path).size();
    demandSize(download.name(), actual, download.size.value_or(actual));
}

void checkSource(const ModelDownload &download, const FileDigest &digest)
{
    if (!isRight(digest.sha256, download.sha256)) {
        throw ModelError(ModelError::Case::wrongContents, download.name());
    }
}

class Inflater
{
public:
    explicit Inflater(QString name)
        : m_name(std::move(name))
    {
        constexpr int gzipWithLargestWindow = 16 + MAX_WBITS;
        if (::inflateInit2(&m_stream, gzipWithLargestWindow) != Z_OK) {
            fail(QStringLiteral("zlib"));
        }
    }
    ~Inflater() { ::inflateEnd(&m_stream); }
    Inflater(const Inflater &) = delete;
    Inflater &operator=(const Inflater &) = delete;

    void inflate(QByteArrayView block, Target &target)
    {
        m_stream.next_in = const_cast<Bytef *>(reinterpret_cast<const Bytef *>(block.data()));
        m_stream.avail_in = static_cast<uInt>(block.size());
        while (m_stream.avail_in > 0) {
            if (m_hasEnded && ::inflateReset(&m_stream) != Z_OK) { // one more member
                fail(QStringLiteral("zlib"));
            }
            m_hasEnded = false;
            do {
                m_stream.next_out = reinterpret_cast<Bytef *>(m_output.data());
                m_stream.avail_out = static_cast<uInt>(m_output.size());
                const int result = ::inflate(&m_stream, Z_NO_FLUSH);
                if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
                    fail(QStringLiteral("gzip 資料有誤"));
                }
                target.write({m_output.data(), qsizetype(m_output.size() - m_stream.avail_out)});
                m_hasEnded = result == Z_STREAM_END;
            } while (!m_hasEnded && m_stream.avail_out == 0);
        }
    }

    void finish() const
    {
        if (!m_hasEnded) {
            fail(QStringLiteral("檔案不完整"));
        }
    }

private:
    [[noreturn]] void fail(const QString &reason) const
    {
        throw ModelError(ModelError::Case::damagedArchive, m_name, reason);
    }

    QString m_name;
    z_stream m_stream = {};
    std::array<char, std::size_t(256) * 1024> m_output;
    bool m_hasEnded = false;
};

RecordedFile unpackSingle(Source &source, const ModelDownload &download, const QString &folder)
{
    Target target(download.files.constFirst(), folder);
    if (download.compression == ModelCompression::gzip && source.isGzip()) {
        const auto inflater = std::make_unique<Inflater>(download.name());
        for (QByteArrayView block = source.next(); !block.isEmpty(); block = source.next()) {
            inflater->inflate(block, target);
        }
        inflater->finish();
    } else {
        for (QByteArrayView block = source.next(); !block.isEmpty(); block = source.next()) {
            target.write(block);
        }
    }
    checkSource(download, source.finish());
    return target.finish();
}

/// Reads a tar archive out of a Source. What a Source throws is kept until the archive library has returned.
class ArchiveReader
{
public:
    explicit ArchiveReader(Source &source)
        : m_source(source)
        , m_archive(::archive_read_new())
    {
        ::archive_read_support_format_tar(m_archive.get());
        ::archive_read_support_filter_bzip2(m_archive.get());
        check(::archive_read_open(m_archive.get(), this, nullptr, &ArchiveReader::read, nullptr));
    }

    /// Null at the end.
    archive_entry *next()
    {
        archive_entry *entry = nullptr;
        const int result = ::archive_read_next_header(m_archive.get(), &entry);
        if (result == ARCHIVE_EOF) {
            return nullptr;
        }
        check(result);
        return entry;
    }

    RecordedFile extract(const ModelFile &file, const QString &folder)
    {
        Target target(file, folder);
        while (true) {
            const void *data = nullptr;
            std::size_t size = 0;
            la_int64_t offset = 0;
            const int result = ::archive_read_data_block(m_archive.get(), &data, &size, &offset);
            if (result == ARCHIVE_EOF) {
                return target.finish();
            }
            check(result);
            target.write({static_cast<const char *>(data), qsizetype(size)});
        }
    }

    [[noreturn]] void fail(const QString &reason) const
    {
        throw ModelError(ModelError::Case::damagedArchive, m_source.name(), reason);
    }

private:
    static la_ssize_t read(archive *archive, void *self, const void **buffer)
    {
        auto *reader = static_cast<ArchiveReader *>(self);
        try {
            const QByteArrayView block = reader->m_source.next();
            *buffer = block.data();
            return block.size();
        } catch (...) {
            reader->m_error = std::current_exception();
            ::archive_set_error(archive, EIO, "unreadable");
            return -1;
        }
    }

    void check(int result) const
    {
        if (m_error) {
            std::rethrow_exception(m_error);
        }
        if (result != ARCHIVE_OK && result != ARCHIVE_WARN) {
            fail(QString::fromUtf8(::archive_error_string(m_archive.get())));
        }
    }

    struct Free
    {
        void operator()(archive *archive) const { ::archive_read_free(archive); }
    };

    Source &m_source;
    std::unique_ptr<archive, Free> m_archive;
    std::exception_ptr m_error;
};

bool leavesItsFolder(const QString &path)
{
    return path.startsWith(QLatin1Char('/')) || path.split(QLatin1Char('/')).contains(QLatin1String(".."));
}

QList<RecordedFile> unpackArchive(Source &source, const ModelDownload &download, const QString &folder)
{
    QList<RecordedFile> unpacked;
    ArchiveReader reader(source);
    while (archive_entry *entry = reader.next()) {
        const char *utf8 = ::archive_entry_pathname_utf8(entry);
        const QString path = QString::fromUtf8(utf8 != nullptr ? utf8 : ::archive_entry_pathname(entry));
        if (leavesItsFolder(path)) {
            reader.fail(QStringLiteral("裡面的「%1」會寫到資料夾外").arg(path));
        }
        const QString name = path.section(QLatin1Char('/'), -1);
        const auto wanted = std::find_if(download.files.begin(), download.files.end(),
            [&name](const ModelFile &file) { return file.name == name; });
        if (wanted == download.files.end()) {
            continue;
        }
        if (::archive_entry_filetype(entry) != AE_IFREG || ::archive_entry_hardlink(entry) != nullptr) {
            reader.fail(QStringLiteral("裡面的「%1」不是一般檔案").arg(path));
        }
        if (QFileInfo::exists(folder + QLatin1Char('/') + name)) {
            reader.fail(QStringLiteral("裡面有兩個「%1」").arg(name));
        }
        unpacked.append(reader.extract(*wanted, folder));
    }
    checkSource(download, source.finish());
    for (const ModelFile &file : download.files) {
        if (!QFileInfo::exists(folder + QLatin1Char('/') + file.name)) {
            throw ModelError(ModelError::Case::fileMissing, file.name);
        }
    }
    return unpacked;
}

} // namespace

QList<RecordedFile> unpackModel(const ModelDownload &download, const QString &path, const QString &folder,
    const UnpackProgress &onProgress, const std::stop_token &stop)
{
    checkSource(download, path);
    Source source(download, path, onProgress, stop);
    if (download.compression == ModelCompression::tarBz2) {
        return unpackArchive(source, download, folder);
    }
    return {unpackSingle(source, download, folder)};
}

} // namespace lumaphone
