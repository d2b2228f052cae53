#include "session/LumaphoneCaptionLine.h"

#include "base/Record.h"
#include "base/Text.h"
#include "language/SpeechLanguageCoding.h"

#include <limits>

namespace lumaphone {

namespace {

constexpr auto idKey = "id";
constexpr auto sourceTextKey = "sourceText";
constexpr auto sourceLanguageKey = "sourceLanguage";
constexpr auto translatedTextKey = "translatedText";
constexpr auto createdAtKey = "createdAt";
constexpr auto isFinalKey = "isFinal";
constexpr auto revisionKey = "revision";

} // namespace

bool operator==(const LumaphoneCaptionLine &a, const LumaphoneCaptionLine &b)
{
    return a.id == b.id && a.sourceLanguage == b.sourceLanguage && a.createdAt == b.createdAt
        && a.isFinal == b.isFinal && a.revision == b.revision
        && text::canonicallyEqual(a.sourceText, b.sourceText)
        && text::canonicallyEqual(a.translatedText, b.translatedText);
}

bool isPending(const LumaphoneCaptionLine &line)
{
    return line.translatedText == pendingTranslationPlaceholder;
}

void countRevision(LumaphoneCaptionLine &line)
{
    if (line.revision == std::numeric_limits<std::int64_t>::max()) {
        qFatal("The revision counter of a caption line overflowed.");
    }
    ++line.revision;
}

json::Value toJson(const LumaphoneCaptionLine &line)
{
    return {
        {idKey, json::fromText(uuidText(line.id))},
        {sourceTextKey, json::fromText(line.sourceText)},
        {sourceLanguageKey, toJson(line.sourceLanguage)},
        {translatedTextKey, json::fromText(line.translatedText)},
        {createdAtKey, json::fromText(iso8601Text(line.createdAt))},
        {isFinalKey, line.isFinal},
        {revisionKey, line.revision},
    };
}

LumaphoneCaptionLine captionLineFromJson(const json::Value &value)
{
    return {
        .id = json::uuid(value, idKey),
        .sourceText = json::text(value, sourceTextKey),
        .sourceLanguage = speechLanguage(value, sourceLanguageKey),
        .translatedText = json::text(value, translatedTextKey),
        .createdAt = json::date(value, createdAtKey),
        .isFinal = json::boolean(value, isFinalKey),
        .revision = json::integer(value, revisionKey),
    };
}

} // namespace lumaphone
