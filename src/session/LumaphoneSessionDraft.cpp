#include "session/LumaphoneSessionDraft.h"

#include "base/Record.h"
#include "language/SpeechLanguageCoding.h"

#include <QSet>

namespace lumaphone {

namespace {

constexpr auto linesKey = "lines";
constexpr auto draftLanguageKey = "sourceLanguage";
constexpr auto detectedLanguageKey = "detectedLanguage";
constexpr auto startedAtKey = "startedAt";
constexpr auto endedAtKey = "endedAt";
constexpr auto updatedAtKey = "updatedAt";

std::optional<QDateTime> optionalDate(const json::Value &object, const char *key)
{
    return json::has(object, key) ? std::optional(json::date(object, key)) : std::nullopt;
}

QList<LumaphoneCaptionLine> linesFromJson(const json::Value &value)
{
    if (!value.is_array()) {
        throw json::DecodingError(QStringLiteral("JSON 欄位「lines」應為陣列。"));
    }
    QList<LumaphoneCaptionLine> lines;
    lines.reserve(qsizetype(value.size()));
    QSet<QUuid> ids;
    for (const json::Value &member : value) {
        LumaphoneCaptionLine line = captionLineFromJson(member);
        // A damaged file may name two lines alike. The later one gets the same other identity at each
        // reading.
        while (ids.contains(line.id)) {
            line.id = QUuid::createUuidV5(line.id, QByteArray::number(lines.size()));
        }
        ids.insert(line.id);
        lines.append(std::move(line));
    }
    return lines;
}

} // namespace

json::Value toJson(const LumaphoneSessionDraft &draft)
{
    json::Value lines = json::Value::array();
    for (const LumaphoneCaptionLine &line : draft.lines) {
        lines.push_back(toJson(line));
    }
    json::Value value {
        {linesKey, std::move(lines)},
        {draftLanguageKey, toJson(draft.sourceLanguage)},
        {updatedAtKey, json::fromText(iso8601Text(draft.updatedAt))},
    };
    if (draft.detectedLanguage) {
        value[detectedLanguageKey] = toJson(*draft.detectedLanguage);
    }
    if (draft.startedAt) {
        value[startedAtKey] = json::fromText(iso8601Text(*draft.startedAt));
    }
    if (draft.endedAt) {
        value[endedAtKey] = json::fromText(iso8601Text(*draft.endedAt));
    }
    return value;
}

LumaphoneSessionDraft sessionDraftFromJson(const json::Value &value)
{
    return {
        .lines = linesFromJson(json::member(value, linesKey)),
        .sourceLanguage = speechLanguage(value, draftLanguageKey),
        .detectedLanguage = json::has(value, detectedLanguageKey)
            ? std::optional(speechLanguage(value, detectedLanguageKey))
            : std::nullopt,
        .startedAt = optionalDate(value, startedAtKey),
        .endedAt = optionalDate(value, endedAtKey),
        .updatedAt = json::date(value, updatedAtKey),
    };
}

} // namespace lumaphone
