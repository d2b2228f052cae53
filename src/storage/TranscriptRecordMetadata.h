#pragma once

#include "base/Json.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "storage/LumaphoneProcessingMode.h"
#include "storage/SavedGlossaryTerm.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace lumaphone {

/// What the library knows of a saved transcript without opening it. Dates are whole seconds.
struct TranscriptRecordMetadata
{
    QUuid id;
    QString title;
    QString note;
    QDateTime createdAt; ///< when it was first saved
    std::optional<QDateTime> startedAt; ///< of the session
    std::optional<QDateTime> endedAt; ///< of the session
    AppleSystemSpeechLanguage sourceLanguage = AppleSystemSpeechLanguage::automatic; ///< as chosen
    std::optional<AppleSystemSpeechLanguage> detectedLanguage; ///< in automatic mode
    QString targetLanguage;
    LumaphoneProcessingMode processingMode = LumaphoneProcessingMode::appleMode;
    QString providerName;
    std::int64_t lineCount = 0;
    QString folderName; ///< under the sessions folder; never leads out of it
    QString searchText; ///< what a search looks through
    QList<SavedGlossaryTerm> glossaryTerms; ///< those that matched in the session

    bool operator==(const TranscriptRecordMetadata &) const = default;

    /// The name of the detected language, else of the chosen one.
    QString languageName() const;
};

/// Whether the name, joined to a folder's path, can mean nothing but a folder directly inside it.
bool isPlainFolderName(const QString &name);

json::Value toJson(const TranscriptRecordMetadata &metadata);
/// Dates of the session, detected language and glossary terms may be absent. Throws json::DecodingError, also
/// for a folder name that leads elsewhere.
TranscriptRecordMetadata transcriptRecordMetadataFromJson(const json::Value &value);

} // namespace lumaphone
