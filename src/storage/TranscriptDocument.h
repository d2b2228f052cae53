#pragma once

#include "storage/SavedTranscriptLine.h"
#include "storage/TranscriptRecordMetadata.h"

#include <QList>
#include <QLocale>
#include <QString>

namespace lumaphone {

/// A saved transcript: what the library knows of it, and its lines.
struct TranscriptDocument
{
    TranscriptRecordMetadata metadata;
    QList<SavedTranscriptLine> lines;

    bool operator==(const TranscriptDocument &) const = default;

    /// All texts of the document, one per line: what a search for it looks through.
    QString searchText() const;

    /// The source texts, with an empty line between them.
    QString sourceText() const;
    /// The translations, empty ones included, with an empty line between them.
    QString translationText() const;
    /// Each source text with its translation below.
    QString bilingualText() const;
    /// A readable page: the metadata, then the lines. Dates in `locale` and the local time zone.
    QString markdownText(const QLocale &locale) const;
};

/// An object with the keys "metadata" and "lines".
json::Value toJson(const TranscriptDocument &document);
/// Both keys are required. Throws json::DecodingError.
TranscriptDocument transcriptDocumentFromJson(const json::Value &value);

} // namespace lumaphone
