#pragma once

#include "storage/TranscriptDocument.h"
#include "storage/TranscriptTextChoice.h"

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <array>
#include <optional>

namespace lumaphone {

/// The file formats in which a transcript leaves the library: the one list of them.
enum class TranscriptExport {
    markdown,
    plainText,
    subRip,
    webVtt,
    json,
};

/// All cases, in the order of menus.
inline constexpr std::array allTranscriptExports {TranscriptExport::markdown, TranscriptExport::plainText,
    TranscriptExport::subRip, TranscriptExport::webVtt, TranscriptExport::json};

/// Identity and file extension, such as "md".
QString rawValue(TranscriptExport format);
/// Exact and case-sensitive; none for any other text.
std::optional<TranscriptExport> transcriptExport(const QString &rawValue);
QString title(TranscriptExport format);
/// Whether the format can show some of a line's texts; if not, it always holds all that there is.
bool hasTextChoice(TranscriptExport format);
/// The whole file, as UTF-8. Dates for people are written as in `locale`; `text` counts where there is a
/// choice.
QByteArray exported(const TranscriptDocument &document, TranscriptExport format, const QLocale &locale,
    TranscriptTextChoice text = TranscriptTextChoice::bilingual);

} // namespace lumaphone
