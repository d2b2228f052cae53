#pragma once

#include "storage/TranscriptDocument.h"

#include <QString>

namespace lumaphone {

/// Which texts subtitles show.
enum class SubtitleText {
    source,
    translation,
    bilingual, ///< the source above the translation
};

/// The document as SubRip subtitles (".srt"), times counted from the start of the session. A line is shown
/// until the next one begins, but no longer than seven seconds; lines that were opened in the same second
/// share the time until the next. Lines without text are left out.
QString srtText(const TranscriptDocument &document, SubtitleText text);
/// The same as WebVTT (".vtt").
QString vttText(const TranscriptDocument &document, SubtitleText text);

} // namespace lumaphone
