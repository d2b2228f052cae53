#include "models/ModelInstaller.h"

#include "base/AtomicFile.h"
#include "base/Completion.h"
#include "base/FileLock.h"
#include "models/FileDownload.h"
#include "models/ModelError.h"
#include "models/ModelManifest.h"
#include "models/ModelUnpacker.h"

#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace lumaphone {

/// What installations share.
struct ModelInstaller::State
{
    const ModelStore &store;
    std::shared_ptr<MainQueue> mainQueue;
    ModelInstallerOptions options;
    QNetworkAccessManager network {};
};

/// Something to unpack, and where it lies.
struct ModelInstaller::Part
{
    ModelDownload download;
    QString path;
};

namespace {

FileLock lockOf(const ModelStore &store, const ModelEntry &entry)
{
    createFolder(store.folder());
    std::optional<FileLock> lock = FileLock::tryTake(store.lockPath(entry));
    if (!lock) {
        throw ModelError(ModelError::Case::busy, entry.id);
    }
    return std::move(*lock);
}

void demandConsent(const ModelEntry &entry, LicenceConsent consent)
{
    if (entry.licence.mustBeAccepted && consent != LicenceConsent::accepted) {
        throw ModelError(ModelError::Case::licenceNotAccepted, entry.title);
    }
}

/// What is known of the sizes must fit on the disk.
void demandSpace(const ModelEntry &entry, const QString &folder, qint64 alreadyThere)
{
    // Not asked of the toolkit, which knows mounted devices only: in a container the root may be none.
    std::error_code failure;
    const auto space = std::filesystem::space(QFile::encodeName(folder).toStdString(), failure);
    if (failure) {
        return;
    }
    auto free = alreadyThere + static_cast<qint64>(space.available);
    for (const ModelDownload &download : entry.downloads) {
        free -= download.size.value_or(0);
        for (const ModelFile &file : download.files) {
            free -= file.size.value_or(0);
        }
    }
    if (free < 0) {
        throw ModelError(ModelError::Case::diskFull, entry.title);
    }
}

bool isWrong(const ModelError &error)
{
    using enum ModelError::Case;
    switch (error.errorCase()) {
    case wrongSize:
    case wrongContents:
    case damagedArchive:
    case fileMissing:
        return true;
    case catalogueUnreadable:
    case unknownModel:
    case licenceNotAccepted:
    case busy:
    case unreachable:
    case refused:
    case stalled:
    case interrupted:
    case diskFull:
    case cancelled:
    case partOfProgram:
    case notShipped:
    case damagedProgram:
        return false;
    }
    Q_UNREACHABLE();
}

QString freshFolder(const QString &path)
{
    errno = 0;
    if (QDir(path).exists() && !QDir(path).removeRecursively()) {
        throw FileError(path, errno != 0 ? errno : EIO);
    }
    createFolder(path);
    return path;
}

void flushFolder(const QString &path)
{
    const int folder = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

/// Puts a complete folder in the place of the model's, in one step, and removes the one that was there.
void putInPlace(const QString &complete, const QString &place)
{
    const QByteArray from = QFile::encodeName(complete);
    const QByteArray to = QFile::encodeName(place);
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) != 0) {
        // Nothing there, or a file system that cannot exchange.
        QDir(place).removeRecursively();
        if (::rename(from.constData(), to.constData()) != 0) {
            throw FileError(place, errno);
        }
    }
    flushFolder(QFileInfo(place).path());
    QDir(complete).removeRecursively();
}

/// Reports at most one step in a hundred from a background thread.
class PostedProgress
{
public:
    PostedProgress(std::shared_ptr<MainQueue> mainQueue, ModelProgressHandler onProgress)
        : m_mainQueue(std::move(mainQueue))
        , m_onProgress(std::move(onProgress))
    {
    }

    void operator()(qint64 done, qint64 total)
    {
        const qint64 step = total > 0 ? done * 100 / total : 0;
        if (!m_onProgress || step == std::exchange(m_lastStep, step)) {
            return;
        }
        m_mainQueue->post([onProgress = m_onProgress, done, total] {
            onProgress({ModelProgress::Phase::unpacking, done, total});
        });
    }

private:
    std::shared_ptr<MainQueue> m_mainQueue;
    ModelProgressHandler m_onProgress;
    qint64 m_lastStep = -1;
};

/// The parts of a download that lie unpacked in a folder.
std::optional<QList<ModelDownload>> unpackedFilesOf(const ModelDownload &download, const QDir &folder)
{
    QList<ModelDownload> files;
    for (const ModelFile &file : download.files) {
        if (!QFileInfo(folder.filePath(file.name)).isFile()) {
            return std::nullopt;
        }
        ModelDownload single;
        single.url = QUrl::fromLocalFile(folder.filePath(file.name));
        single.files = {file};
        files.append(single);
    }
    return files;
}

} // namespace

ModelInstaller::ModelInstaller(
    const ModelStore &store, std::shared_ptr<MainQueue> mainQueue, ModelInstallerOptions options)
    : m_state(new State {store, std::move(mainQueue), options})
{
}

ModelInstaller::~ModelInstaller() = default;

QCoro::Task<> ModelInstaller::install(
    QString id, LicenceConsent consent, ModelProgressHandler onProgress, std::stop_token stop)
{
    const std::shared_ptr<State> state = m_state;
    const ModelEntry entry = state->store.catalogue().entry(id);
    state->store.demandNotBundled(entry);
    demandConsent(entry, consent);
    const FileLock lock = lockOf(state->store, entry);
    if (state->store.state(entry) == ModelState::installed) {
        co_return;
    }
    const QString folder = state->store.partialFolder(entry);
    createFolder(folder);

    QList<Part> parts;
    qint64 alreadyThere = 0;
    for (qsizetype index = 0; index < entry.downloads.size(); ++index) {
        parts.append({entry.downloads[index], QStringLiteral("%1/%2.download").arg(folder).arg(index)});
        alreadyThere += QFileInfo(parts.last().path).size();
    }
    demandSpace(entry, folder, alreadyThere);

    qint64 before = 0;
    const std::optional<qint64> total = entry.knownDownloadSize();
    for (const Part &part : std::as_const(parts)) {
        const std::function<void(qint64)> onBytes = [&onProgress, before, total](qint64 received) {
            if (onProgress) {
                onProgress({ModelProgress::Phase::downloading, before + received, total});
            }
        };
        co_await fetch(state, part.download, part.path, onBytes, stop);
        before += QFileInfo(part.path).size();
    }
    co_await complete(state, entry, parts, onProgress, stop);
    QDir(folder).removeRecursively();
}

QCoro::Task<> ModelInstaller::installFrom(
    QString path, QString id, LicenceConsent consent, ModelProgressHandler onProgress, std::stop_token stop)
{
    const std::shared_ptr<State> state = m_state;
    const ModelEntry entry = state->store.catalogue().entry(id);
    state->store.demandNotBundled(entry);
    demandConsent(entry, consent);
    const bool isFolder = QFileInfo(path).isDir();
    const QDir folder(path);
    QList<Part> parts;
    for (const ModelDownload &download : entry.downloads) {
        const QString packed = isFolder ? folder.filePath(download.name()) : path;
        if (!isFolder && entry.downloads.size() > 1) {
            throw ModelError(ModelError::Case::fileMissing, download.name());
        }
        if (QFileInfo(packed).isFile()) {
            parts.append({download, packed});
            continue;
        }
        const auto files = unpackedFilesOf(download, folder);
        if (!isFolder || !files) {
            throw ModelError(ModelError::Case::fileMissing, packed);
        }
        for (const ModelDownload &file : *files) {
            parts.append({file, file.url.toLocalFile()});
        }
    }
    const FileLock lock = lockOf(state->store, entry);
    demandSpace(entry, state->store.folder(), 0);
    co_await complete(state, entry, parts, onProgress, stop);
}

QCoro::Task<> ModelInstaller::fetch(std::shared_ptr<State> state, ModelDownload download, QString path,
    std::function<void(qint64)> onBytes, std::stop_token stop)
{
    if (stop.stop_requested()) {
        throw ModelError(ModelError::Case::cancelled, download.name());
    }
    // All of it is here already if an earlier installation ended later.
    if (download.size && QFileInfo(path).size() == *download.size) {
        co_return;
    }
    for (int attempt = 1;; ++attempt) {
        FileDownload transfer(state->mainQueue, state->network, download.url, path,
            state->options.stallTimeout,
            [&onBytes](qint64 received, std::optional<qint64>) { onBytes(received); });
        const std::stop_callback onStop(stop, [&transfer] { transfer.cancel(); });
        try {
            co_await transfer.finished();
            co_return;
        } catch (const ModelError &error) {
            if (error.errorCase() != ModelError::Case::interrupted || attempt >= state->options.attempts) {
                throw;
            }
        }
    }
}

QCoro::Task<> ModelInstaller::complete(std::shared_ptr<State> state, ModelEntry entry, QList<Part> parts,
    ModelProgressHandler onProgress, std::stop_token stop)
{
    const QString unfinished = state->store.folder() + QStringLiteral("/.%1.new").arg(entry.id);
    const QString place = state->store.modelFolder(entry);
    const QString partial = state->store.partialFolder(entry);
    const auto work = [parts, unfinished, place, partial, stop,
                          progress = PostedProgress(state->mainQueue, std::move(onProgress))]() mutable {
        freshFolder(unfinished);
        ModelManifest manifest;
        for (const Part &part : parts) {
            try {
                manifest.files += unpackModel(
                    part.download, part.path, unfinished,
                    [&progress](qint64 done, qint64 total) { progress(done, total); }, stop);
            } catch (const ModelError &error) {
                QDir(unfinished).removeRecursively();
                // What is wrong once would be wrong again.
                if (part.path.startsWith(partial) && isWrong(error)) {
                    removeFile(part.path);
                }
                throw;
            } catch (...) {
                QDir(unfinished).removeRecursively();
                throw;
            }
        }
        manifest.installedAt = QDateTime::currentDateTimeUtc();
        manifest.write(unfinished);
        putInPlace(unfinished, place);
    };
    co_await runInBackground(state->mainQueue, "models", work);
}

} // namespace lumaphone
