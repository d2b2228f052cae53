#include "session/revision/CoreRevisionExchange.h"

#include "base/Json.h"
#include "session/revision/RevisionRule.h"

namespace lumaphone {

namespace {

constexpr auto operationKey = "operation";
constexpr auto currentTextKey = "current_text";
constexpr auto incomingTextKey = "incoming_text";
constexpr auto isRevisionKey = "is_revision";
constexpr auto isRevisionOperation = "is_revision";
constexpr auto textsKey = "texts";
constexpr auto areRevisionsKey = "are_revisions";
constexpr auto areRevisionsOperation = "are_revisions";

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

CoreRevisionResponse decodeCoreRevisionResponse(const QByteArray &bytes)
{
    return {json::boolean(json::parse(bytes), isRevisionKey)};
}

QByteArray encode(const CoreRevisionsRequest &request)
{
    json::OrderedValue texts = json::OrderedValue::array();
    for (const QString &text : request.texts) {
        texts.push_back(json::fromText(text));
    }
    return json::compact(
        json::OrderedValue {{operationKey, areRevisionsOperation}, {textsKey, std::move(texts)}});
}

QByteArray encode(const CoreRevisionsResponse &response)
{
    json::OrderedValue answers = json::OrderedValue::array();
    for (const bool answer : response.areRevisions) {
        answers.push_back(answer);
    }
    json::OrderedValue object;
    object[areRevisionsKey] = std::move(answers);
    return json::compact(object);
}

CoreRevisionsResponse decodeCoreRevisionsResponse(const QByteArray &bytes, qsizetype count)
{
    const json::Value root = json::parse(bytes);
    const json::Value &answers = json::member(root, areRevisionsKey);
    if (!answers.is_array()) {
        throw json::DecodingError(QStringLiteral("JSON 欄位「are_revisions」應為陣列。"));
    }
    CoreRevisionsResponse response;
    for (const json::Value &answer : answers) {
        if (!answer.is_boolean()) {
            throw json::DecodingError(QStringLiteral("JSON 欄位「are_revisions」應只含布林值。"));
        }
        response.areRevisions.append(answer.get<bool>());
    }
    if (response.areRevisions.size() != count) {
        throw json::DecodingError(QStringLiteral("JSON 欄位「are_revisions」應有 %1 個值。").arg(count));
    }
    return response;
}

QByteArray answerOfTheRule(const QByteArray &bytes)
{
    const json::Value value = json::parse(bytes);
    const QString operation = json::text(value, operationKey);
    if (operation == QLatin1String(isRevisionOperation)) {
        return encode(CoreRevisionResponse {fallbackIsRevisionOfCurrentPartial(
            json::text(value, currentTextKey), json::text(value, incomingTextKey))});
    }
    if (operation == QLatin1String(areRevisionsOperation)) {
        const QStringList texts = json::texts(value, textsKey);
        CoreRevisionsResponse response;
        for (qsizetype i = 1; i < texts.size(); ++i) {
            response.areRevisions.append(fallbackIsRevisionOfCurrentPartial(texts[i - 1], texts[i]));
        }
        return encode(response);
    }
    throw json::DecodingError(QStringLiteral("不支援的 operation。"));
}

} // namespace lumaphone
