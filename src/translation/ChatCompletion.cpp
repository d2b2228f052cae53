#include "translation/ChatCompletion.h"

#include "base/Json.h"

namespace lumaphone {

namespace {

json::OrderedValue encodedMessage(const ChatMessage &message)
{
    return {{"role", json::fromText(message.role)}, {"content", json::fromText(message.content)}};
}

ChatMessage decodedMessage(const json::Value &value)
{
    return {json::text(value, "role"), json::text(value, "content")};
}

} // namespace

QByteArray ChatCompletionRequest::encoded() const
{
    json::OrderedValue encodedMessages = json::OrderedValue::array();
    for (const ChatMessage &message : messages) {
        encodedMessages.push_back(encodedMessage(message));
    }
    json::OrderedValue request;
    request["model"] = json::fromText(model);
    request["messages"] = std::move(encodedMessages);
    request["temperature"] = temperature;
    return json::compact(request);
}

ChatCompletionResponse ChatCompletionResponse::decoded(const QByteArray &json)
{
    const json::Value root = json::parse(json);
    const json::Value &choices = json::member(root, "choices");
    if (!choices.is_array()) {
        throw json::DecodingError(QStringLiteral("JSON 欄位「choices」應為 陣列。"));
    }
    ChatCompletionResponse response;
    for (const json::Value &choice : choices) {
        response.choices.append({decodedMessage(json::member(choice, "message"))});
    }
    return response;
}

} // namespace lumaphone
