#pragma once

#include "storage/TranscriptExport.h"
#include "storage/TranscriptRecordMetadata.h"

#include <QLocale>
#include <QString>

namespace lumaphone {

/// The line below a record's title: date, languages, provider and length, with the date as the user of
/// `locale` writes it, in the local time zone.
QString metadataSubtitle(const TranscriptRecordMetadata &record, const QLocale &locale);

/// What the menu says that exports in a format, such as "匯出 Markdown…".
QString exportText(TranscriptExport format);

/// A file name, without extension, for an export of a record with this title.
QString safeFilename(const QString &title);

} // namespace lumaphone
