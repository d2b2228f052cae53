#include "Require.h"
#include "base/Json.h"
#include "translation/ChatCompletion.h"

#include <cstddef>
#include <cstdint>

using namespace lumaphone;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const ChatCompletionResponse response = ChatCompletionResponse::decoded(bytes);
        json::OrderedValue choices = json::OrderedValue::array();
        for (const auto &choice : response.choices) {
            choices.push_back({{"message",
                {{"role", json::fromText(choice.message.role)},
                    {"content", json::fromText(choice.message.content)}}}});
        }
        const QByteArray again = json::compact(json::OrderedValue {{"choices", choices}});
        fuzz::require(ChatCompletionResponse::decoded(again) == response, "what is written reads back");
    } catch (const json::DecodingError &error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says something");
        fuzz::require(error.errorDescription().size() < 1000, "an error is short");
    }
    return 0;
}
