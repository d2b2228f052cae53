#include "models/FileDigest.h"

#include "models/ModelError.h"
#include "models/ModelFileStreams.h"

namespace lumaphone {

void RunningDigest::add(QByteArrayView bytes)
{
    m_hash.addData(bytes);
    m_size += bytes.size();
}

FileDigest RunningDigest::result() const
{
    return {m_size, QString::fromLatin1(m_hash.result().toHex())};
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
