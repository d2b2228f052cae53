#include "session/revision/CoreRevisionExchange.h"

#include "base/Json.h"

namespace lumaphone {

namespace {

constexpr auto operationKey = "operation";
constexpr auto currentTextKey = "current_text";
constexpr auto incomingTextKey = "incoming_text";
constexpr auto isRevisionKey = "is_revision";
constexpr auto isRevisionOperation = "is_revision";

} // namespace

QByteArray encode(const CoreRevisionRequest &request)
{
    return json::compact(json::OrderedValue {
        {operationKey, isRevisionOperation},
        {currentTextKey, json::fromText(request.currentText)},
        {incomingTextKey, json::fromText(request.incomingText)},
    });
}

QByteArray encode(CoreRevisionResponse response)
{
    return json::compact(json::OrderedValue {{isRevisionKey, response.isRevision}});
}

CoreRevisionRequest decodeCoreRevisionRequest(const QByteArray &bytes)
{
    const json::Value request = json::parse(bytes);
    if (json::text(request, operationKey) != QLatin1String(isRevisionOperation)) {
        throw json::DecodingError(QStringLiteral("不支援的 operation。"));
    }
    return {json::text(request, currentTextKey), json::text(request, incomingTextKey)};
}

CoreRevisionResponse decodeCoreRevisionResponse(const QByteArray &bytes)
{
    return {json::boolean(json::parse(bytes), isRevisionKey)};
}

} // namespace lumaphone
