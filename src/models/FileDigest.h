#pragma once

#include <QByteArrayView>
#include <QCryptographicHash>
#include <QString>

#include <stop_token>

namespace lumaphone {

/// What tells whether a file is the right one.
struct FileDigest
{
    qint64 size = 0; ///< bytes
    QString sha256; ///< lower-case hexadecimal
};

/// Counts and hashes bytes that pass by.
class RunningDigest
{
public:
    void add(QByteArrayView bytes);
    qint64 size() const { return m_size; }
    FileDigest result() const;

private:
    QCryptographicHash m_hash {QCryptographicHash::Sha256};
    qint64 m_size = 0;
};

/// The digest of a whole file. Throws FileError, and ModelError (cancelled) when `stop` is requested.
FileDigest digestOf(const QString &path, const std::stop_token &stop = {});

} // namespace lumaphone
