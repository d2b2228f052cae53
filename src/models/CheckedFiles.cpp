#include "models/CheckedFiles.h"

#include "base/AtomicFile.h"
#include "base/FileLock.h"
#include "base/Json.h"
#include "models/ModelError.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace lumaphone {

namespace {

/// File systems count time in steps; the coarsest in two seconds.
constexpr std::chrono::seconds coarsestStep {2};

qint64 nanoseconds(const timespec &time)
{
    constexpr qint64 perSecond = 1'000'000'000;
    return qint64(time.tv_sec) * perSecond + time.tv_nsec;
}

} // namespace

CheckedFiles::CheckedFiles(QString record)
    : CheckedFiles(std::move(record), Environment {})
{
}

CheckedFiles::CheckedFiles(QString record, Environment environment)
    : m_record(std::move(record))
    , m_environment(std::move(environment))
{
}

void CheckedFiles::demand(const QString &path, const FileDigest &expected, const std::stop_token &stop)
{
    const Stamp before = stampOf(path);
    demandSize(path, before.size, expected.size);
    const Finding finding {before, expected.sha256};
    if (isKnown(path, finding)) {
        return;
    }
    const bool wasSettled = isSettled(before);
    demandDigest(path, m_environment.digest(path, stop), expected);
    if (wasSettled && stampOf(path) == before) {
        remember(path, finding);
    }
}

CheckedFiles::Stamp CheckedFiles::stampOf(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) {
            throw ModelError(ModelError::Case::fileMissing, path);
        }
        throw FileError(path, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        throw ModelError(ModelError::Case::fileMissing, path);
    }
    return {qint64(status.st_dev), qint64(status.st_ino), qint64(status.st_size), nanoseconds(status.st_mtim),
        nanoseconds(status.st_ctim)};
}

/// One that changed a moment ago may change again without anybody being able to tell.
bool CheckedFiles::isSettled(const Stamp &stamp) const
{
    const auto latest = m_environment.now() - coarsestStep;
    return stamp.changed
        < std::chrono::duration_cast<std::chrono::nanoseconds>(latest.time_since_epoch()).count();
}

bool CheckedFiles::isKnown(const QString &path, const Finding &finding)
{
    const std::lock_guard lock(m_mutex);
    if (m_findings.value(path) == finding) {
        return true;
    }
    const Findings recorded = findingsIn(m_record);
    const auto found = recorded.constFind(path);
    if (found == recorded.constEnd() || *found != finding) {
        return false;
    }
    m_findings.insert(path, finding);
    return true;
}

void CheckedFiles::remember(const QString &path, const Finding &finding)
{
    {
        const std::lock_guard lock(m_mutex);
        m_findings.insert(path, finding);
    }
    try {
        createFolder(QFileInfo(m_record).path());
        const FileLock lock = FileLock::wait(m_record + QStringLiteral(".lock"));
        Findings findings = findingsIn(m_record);
        findings.removeIf([](const Findings::iterator &entry) { return !QFileInfo::exists(entry.key()); });
        findings.insert(path, finding);
        write(m_record, findings);
    } catch (const LocalizedError &) {
        // The file will be read again another time.
    }
}

CheckedFiles::Findings CheckedFiles::findingsIn(const QString &record)
{
    try {
        const std::optional<QByteArray> bytes = readFile(record);
        if (!bytes) {
            return {};
        }
        Findings findings;
        const json::Value object = json::parse(*bytes);
        for (const json::Value &file : json::member(object, "files")) {
            const Stamp stamp {json::integer(file, "device"), json::integer(file, "inode"),
                json::integer(file, "size"), json::integer(file, "modified"), json::integer(file, "changed")};
            findings.insert(json::text(file, "path"), {stamp, json::text(file, "sha256")});
        }
        return findings;
    } catch (const LocalizedError &) {
        return {};
    }
}

void CheckedFiles::write(const QString &record, const Findings &findings)
{
    json::Value files = json::Value::array();
    for (auto found = findings.constBegin(); found != findings.constEnd(); ++found) {
        const Stamp &stamp = found->stamp;
        files.push_back({{"path", json::fromText(found.key())}, {"sha256", json::fromText(found->sha256)},
            {"device", stamp.device}, {"inode", stamp.inode}, {"size", stamp.size},
            {"modified", stamp.modified}, {"changed", stamp.changed}});
    }
    replaceFile(record, json::pretty({{"files", files}}), Durability::renamed);
}

} // namespace lumaphone
