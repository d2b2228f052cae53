#pragma once

#include <QString>

#include <array>

namespace lumaphone {

/// Which texts of its lines a transcript is exported with.
enum class TranscriptTextChoice {
    source,
    translation,
    bilingual, ///< the source above the translation
};

/// All cases, in the order of menus.
inline constexpr std::array allTranscriptTextChoices {
    TranscriptTextChoice::source, TranscriptTextChoice::translation, TranscriptTextChoice::bilingual};

/// Identity, such as "source".
QString rawValue(TranscriptTextChoice choice);

} // namespace lumaphone
