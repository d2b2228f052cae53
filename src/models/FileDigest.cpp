#include "models/FileDigest.h"

#include "models/ModelError.h"
#include "models/ModelFileStreams.h"

#include <nettle/sha2.h>

#include <array>

namespace lumaphone {

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
