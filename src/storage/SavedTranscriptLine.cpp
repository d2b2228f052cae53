#include "storage/SavedTranscriptLine.h"

#include "base/Record.h"
#include "storage/RecordCoding.h"

namespace lumaphone {

json::Value toJson(const SavedTranscriptLine &line)
{
    return {
        {"id", json::fromText(uuidText(line.id))},
        {"sourceText", json::fromText(line.sourceText)},
        {"translatedText", json::fromText(line.translatedText)},
        {"sourceLanguage", json::fromText(rawValue(line.sourceLanguage))},
        {"createdAt", json::fromText(iso8601Text(line.createdAt))},
        {"isFinal", line.isFinal},
    };
}

SavedTranscriptLine savedTranscriptLineFromJson(const json::Value &value)
{
    return {
        .id = json::uuid(value, "id"),
        .sourceText = json::text(value, "sourceText"),
        .translatedText = json::text(value, "translatedText"),
        .sourceLanguage = recordcoding::choice(value, "sourceLanguage", speechLanguageFromRawValue),
        .createdAt = json::date(value, "createdAt"),
        .isFinal = json::boolean(value, "isFinal"),
    };
}

} // namespace lumaphone
