#pragma once

#include "storage/TranscriptDocument.h"
#include "storage/TranscriptTextChoice.h"

#include <QString>

namespace lumaphone {

/// The document as SubRip subtitles (".srt"), times counted from the start of the session. A line is shown
/// until the next one begins, but no longer than seven seconds; lines that were opened in the same second
/// share the time until the next. Lines without text are left out.
QString srtText(const TranscriptDocument &document, TranscriptTextChoice text);
/// The same as WebVTT (".vtt").
QString vttText(const TranscriptDocument &document, TranscriptTextChoice text);

} // namespace lumaphone
