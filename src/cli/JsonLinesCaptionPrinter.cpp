#include "cli/JsonLinesCaptionPrinter.h"

#include "base/Json.h"

#include <array>

namespace lumaphone::cli {

namespace {

// The order in which people like to read a line's members.
constexpr std::array lineKeys {
    "id", "sourceText", "sourceLanguage", "translatedText", "createdAt", "isFinal", "revision"};

} // namespace

JsonLinesCaptionPrinter::JsonLinesCaptionPrinter(CommandStreams streams)
    : m_streams(std::move(streams))
{
}

void JsonLinesCaptionPrinter::lineChanged(const LumaphoneCaptionLine &line, TranslationState /*translation*/)
{
    json::OrderedValue event {{"event", "line"}};
    const json::Value members = toJson(line);
    for (const char *key : lineKeys) {
        event[key] = members.at(key);
    }
    m_streams.out(json::compact(event) + '\n');
}

void JsonLinesCaptionPrinter::statusChanged(const QString &status)
{
    printStatus(status, false);
}

void JsonLinesCaptionPrinter::failed(const QString &message)
{
    printStatus(message, true);
    m_streams.complain(message);
}

void JsonLinesCaptionPrinter::printStatus(const QString &status, bool isFailure)
{
    m_streams.out(json::compact(json::OrderedValue {
                      {"event", "status"}, {"status", json::fromText(status)}, {"isFailure", isFailure}})
        + '\n');
}

} // namespace lumaphone::cli
