#pragma once

#include "base/LocalizedError.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>
#include <span>

namespace lumaphone {

/// An error of the file system. The text names the file and says what the system reported.
class FileError : public PlatformError
{
public:
    FileError(const QString &path, int errorNumber);
    const QString &path() const { return m_path; }
    int errorNumber() const { return m_errorNumber; }

private:
    QString m_path;
    int m_errorNumber;
};

enum class Durability {
    renamed, ///< survives the death of the process
    flushed, ///< survives a power cut as well: file and folder are flushed to the disk
};

/// Replaces `path` in one step: whoever reads it, now or after a crash, finds the old bytes or the new ones.
/// The temporary file lies in the same folder, which must exist. Throws FileError and leaves no trace then.
void replaceFile(const QString &path, const QByteArray &bytes, Durability durability);
/// The same for bytes that lie in several pieces.
void replaceFile(const QString &path, std::span<const QByteArrayView> pieces, Durability durability);

/// Removes what replacements of `path` have left beside it whose process was killed in the middle. Only for
/// whoever knows that nobody is replacing it at this moment.
void removeInterruptedReplacements(const QString &path);

/// All bytes of a file, or none if it does not exist. Throws FileError for every other failure.
std::optional<QByteArray> readFile(const QString &path);

/// Creates a folder and its parents. Throws FileError.
void createFolder(const QString &path);

/// Gives a file that cannot be read a second name, such as "index.damaged.json" or, if that is taken,
/// "index.damaged-2.json", so that replacing it destroys nothing. Where the file system knows no second
/// names, the file is renamed. Does nothing if there is no file. Returns that name. Throws FileError.
QString keepAside(const QString &path);

/// Removes a file; one that is already gone is fine. Throws FileError.
void removeFile(const QString &path);

} // namespace lumaphone
