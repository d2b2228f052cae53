#pragma once

#include "base/Json.h"
#include "session/LumaphoneCaptionLine.h"

#include <QDateTime>
#include <QList>

#include <optional>

namespace lumaphone {

/// What a session would lose with the program: its lines and what belongs to them.
struct LumaphoneSessionDraft
{
    QList<LumaphoneCaptionLine> lines;
    AppleSystemSpeechLanguage sourceLanguage = AppleSystemSpeechLanguage::automatic;
    std::optional<AppleSystemSpeechLanguage> detectedLanguage;
    std::optional<QDateTime> startedAt;
    std::optional<QDateTime> endedAt;
    QDateTime updatedAt;

    bool operator==(const LumaphoneSessionDraft &) const = default;
};

/// An object with the fields' names as keys; what is none is absent.
json::Value toJson(const LumaphoneSessionDraft &draft);
/// Lines, source language and date of the update are required. Throws json::DecodingError.
LumaphoneSessionDraft sessionDraftFromJson(const json::Value &value);

} // namespace lumaphone
