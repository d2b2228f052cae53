#include "storage/TranscriptRecordMetadata.h"

#include "base/Record.h"
#include "storage/RecordCoding.h"

namespace lumaphone {

namespace {

std::optional<QDateTime> optionalDate(const json::Value &value, const char *key)
{
    return json::has(value, key) ? std::optional(json::date(value, key)) : std::nullopt;
}

QString folderName(const json::Value &value)
{
    QString name = json::text(value, "folderName");
    if (!isPlainFolderName(name)) {
        throw json::DecodingError(
            QStringLiteral("JSON 欄位「folderName」不是資料夾名稱：「%1」。").arg(json::excerpt(name)));
    }
    return name;
}

} // namespace

bool isPlainFolderName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..")
        && !name.contains(QLatin1Char('/')) && !name.contains(QChar(0));
}

QString TranscriptRecordMetadata::languageName() const
{
    return displayName(detectedLanguage.value_or(sourceLanguage));
}

json::Value toJson(const TranscriptRecordMetadata &metadata)
{
    json::Value value = {
        {"id", json::fromText(uuidText(metadata.id))},
        {"title", json::fromText(metadata.title)},
        {"note", json::fromText(metadata.note)},
        {"createdAt", json::fromText(iso8601Text(metadata.createdAt))},
        {"sourceLanguage", json::fromText(rawValue(metadata.sourceLanguage))},
        {"targetLanguage", json::fromText(metadata.targetLanguage)},
        {"processingMode", json::fromText(rawValue(metadata.processingMode))},
        {"providerName", json::fromText(metadata.providerName)},
        {"lineCount", metadata.lineCount},
        {"folderName", json::fromText(metadata.folderName)},
        {"searchText", json::fromText(metadata.searchText)},
        {"glossaryTerms", recordcoding::array(metadata.glossaryTerms)},
    };
    if (metadata.startedAt) {
        value["startedAt"] = json::fromText(iso8601Text(*metadata.startedAt));
    }
    if (metadata.endedAt) {
        value["endedAt"] = json::fromText(iso8601Text(*metadata.endedAt));
    }
    if (metadata.detectedLanguage) {
        value["detectedLanguage"] = json::fromText(rawValue(*metadata.detectedLanguage));
    }
    return value;
}

TranscriptRecordMetadata transcriptRecordMetadataFromJson(const json::Value &value)
{
    TranscriptRecordMetadata metadata {
        .id = json::uuid(value, "id"),
        .title = json::text(value, "title"),
        .note = json::text(value, "note"),
        .createdAt = json::date(value, "createdAt"),
        .startedAt = optionalDate(value, "startedAt"),
        .endedAt = optionalDate(value, "endedAt"),
        .sourceLanguage = recordcoding::choice(value, "sourceLanguage", speechLanguageFromRawValue),
        .detectedLanguage = std::nullopt,
        .targetLanguage = json::text(value, "targetLanguage"),
        .processingMode = recordcoding::choice(value, "processingMode", lumaphoneProcessingMode),
        .providerName = json::text(value, "providerName"),
        .lineCount = json::integer(value, "lineCount"),
        .folderName = folderName(value),
        .searchText = json::text(value, "searchText"),
        .glossaryTerms = {},
    };
    if (json::has(value, "detectedLanguage")) {
        metadata.detectedLanguage
            = recordcoding::choice(value, "detectedLanguage", speechLanguageFromRawValue);
    }
    if (json::has(value, "glossaryTerms")) {
        metadata.glossaryTerms
            = recordcoding::list(json::member(value, "glossaryTerms"), savedGlossaryTermFromJson);
    }
    return metadata;
}

} // namespace lumaphone
