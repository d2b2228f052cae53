#pragma once

#include "models/FileDigest.h"

#include <QHash>
#include <QString>

#include <chrono>
#include <functional>
#include <mutex>
#include <stop_token>

namespace lumaphone {

/// Tells whether files are the ones they should be, and reads a file only if it has changed since it was last
/// found right. What was found is remembered in a file that all of the user's processes share; where it
/// cannot be read or written, files are read again. Any thread.
class CheckedFiles
{
public:
    /// What tests replace.
    struct Environment
    {
        std::function<std::chrono::system_clock::time_point()> now = &std::chrono::system_clock::now;
        std::function<FileDigest(const QString &, const std::stop_token &)> digest = &digestOf;
    };

    /// `record` is the file that remembers; neither it nor its folder need exist.
    explicit CheckedFiles(QString record);
    CheckedFiles(QString record, Environment environment);

    /// Takes a while for a large file that has changed. Throws ModelError (fileMissing, wrongSize,
    /// wrongContents; cancelled when `stop` is requested), FileError.
    void demand(const QString &path, const FileDigest &expected, const std::stop_token &stop = {});

private:
    /// What changes with every change of a file, however small.
    struct Stamp
    {
        qint64 device = 0;
        qint64 inode = 0;
        qint64 size = 0; ///< bytes
        qint64 modified = 0; ///< nanoseconds since 1970, as the next
        qint64 changed = 0;

        bool operator==(const Stamp &) const = default;
    };
    struct Finding
    {
        Stamp stamp;
        QString sha256;

        bool operator==(const Finding &) const = default;
    };
    using Findings = QHash<QString, Finding>; ///< by path

    static Stamp stampOf(const QString &path);
    static Findings findingsIn(const QString &record);
    static void write(const QString &record, const Findings &findings);
    bool isKnown(const QString &path, const Finding &finding);
    void remember(const QString &path, const Finding &finding);
    bool isSettled(const Stamp &stamp) const;

    QString m_record;
    Environment m_environment;
    std::mutex m_mutex;
    Findings m_findings; ///< of this process; under the lock
};

} // namespace lumaphone
