#pragma once

#include <QByteArrayView>
#include <QString>

#include <memory>
#include <stop_token>

struct sha256_ctx;

namespace lumaphone {

/// What tells whether a file is the right one.
struct FileDigest
{
    qint64 size = 0; ///< bytes
    QString sha256; ///< lower-case hexadecimal

    bool operator==(const FileDigest &) const = default;
};

/// Throws ModelError (wrongSize). `name` is for the error.
void demandSize(const QString &name, qint64 actual, qint64 expected);
/// Throws ModelError (wrongSize, wrongContents).
void demandDigest(const QString &name, const FileDigest &actual, const FileDigest &expected);

/// Counts and hashes bytes that pass by.
class RunningDigest
{
public:
    RunningDigest();
    ~RunningDigest();

    void add(QByteArrayView bytes);
    qint64 size() const { return m_size; }
    FileDigest result() const;

private:
    std::unique_ptr<sha256_ctx> m_hash;
    qint64 m_size = 0;
};

/// The digest of a whole file. Throws FileError, and ModelError (cancelled) when `stop` is requested.
FileDigest digestOf(const QString &path, const std::stop_token &stop = {});

} // namespace lumaphone
