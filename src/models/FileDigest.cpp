#include "models/FileDigest.h"

#include "models/ModelError.h"
#include "models/ModelFileStreams.h"

#include <nettle/sha2.h>

#include <array>

namespace lumaphone {

void demandSize(const QString &name, qint64 actual, qint64 expected)
{
    if (actual != expected) {
        throw ModelError(ModelError::Case::wrongSize, name,
            QStringLiteral("應為 %1，實際為 %2").arg(expected).arg(actual));
    }
}

void demandDigest(const QString &name, const FileDigest &actual, const FileDigest &expected)
{
    demandSize(name, actual.size, expected.size);
    if (actual.sha256 != expected.sha256) {
        throw ModelError(ModelError::Case::wrongContents, name);
    }
}

// The toolkit's own SHA-256 takes ten times as long: it does without the instructions that processors have
// for it.
RunningDigest::RunningDigest()
    : m_hash(std::make_unique<sha256_ctx>())
{
    ::sha256_init(m_hash.get());
}

RunningDigest::~RunningDigest() = default;

void RunningDigest::add(QByteArrayView bytes)
{
    ::sha256_update(m_hash.get(), static_cast<std::size_t>(bytes.size()),
        reinterpret_cast<const std::uint8_t *>(bytes.data()));
    m_size += bytes.size();
}

FileDigest RunningDigest::result() const
{
    sha256_ctx hash = *m_hash; // the result ends it
    std::array<char, SHA256_DIGEST_SIZE> digest {};
    ::sha256_digest(&hash, digest.size(), reinterpret_cast<std::uint8_t *>(digest.data()));
    return {m_size, QString::fromLatin1(QByteArray(digest.data(), digest.size()).toHex())};
}

FileDigest digestOf(const QString &path, const std::stop_token &stop)
{
    RunningDigest digest;
    ModelFileReader reader(path);
    while (true) {
        const QByteArrayView block = reader.next();
        if (block.isEmpty()) {
            return digest.result();
        }
        digest.add(block);
        if (stop.stop_requested()) {
            throw ModelError(ModelError::Case::cancelled, path);
        }
    }
}

} // namespace lumaphone
