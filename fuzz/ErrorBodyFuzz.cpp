#include "Require.h"
#include "translation/ErrorBody.h"

#include <cstddef>
#include <cstdint>

using namespace lumaphone;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString body = error_body::text(bytes);
    fuzz::require(body.isEmpty() || body.toUtf8() == bytes, "text is the body or nothing");

    const QString sanitized = error_body::sanitized(body);
    fuzz::require(!sanitized.isEmpty(), "there is always something to show");
    fuzz::require(error_body::sanitized(body) == sanitized, "the same body shows the same text");
    fuzz::require(!sanitized.contains(QStringLiteral("Bearer x")), "no token shows");

    const QString secret = QStringLiteral("sk-0123456789abcdef");
    const QString shown = error_body::withoutSecret(sanitized, secret);
    fuzz::require(!shown.contains(secret), "no secret shows");
    fuzz::require(!shown.endsWith(secret.left(8)), "no beginning of a secret shows at the end");
    return 0;
}
