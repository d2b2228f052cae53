#pragma once

#include <QString>

namespace lumaphone::cli {

/// Columns that a terminal uses for the text: two for East Asian wide characters, none for combining marks.
int terminalColumns(const QString &text);

/// The end of the text that fits into `columns`, after "…" where something was cut off. Captions grow at
/// their end, so that is the part to show.
QString tailFitting(const QString &text, int columns);

/// The text on one row: control characters and line breaks become blanks.
QString singleRow(const QString &text);

/// The text on the rows that it has: other control characters than line breaks become blanks.
QString severalRows(const QString &text);

} // namespace lumaphone::cli
