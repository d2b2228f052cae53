#pragma once

#include "storage/TranscriptRecordMetadata.h"

#include <QHash>
#include <QList>
#include <QLocale>
#include <QString>
#include <QUuid>

#include <chrono>
#include <optional>

namespace lumaphone {

/// Finds records by a part of their texts, without regard to case in one locale. What a search prepares is
/// kept for the next, until the record changes.
class TranscriptSearch
{
public:
    explicit TranscriptSearch(const QLocale &locale);

    /// The records that contain `query`, in their order; all of them for a blank one.
    QList<TranscriptRecordMetadata> filtered(
        const QList<TranscriptRecordMetadata> &records, const QString &query);
    /// Prepares a part of what the first search needs, for about as long as `budget`. Whether all of it is
    /// done.
    bool prepare(const QList<TranscriptRecordMetadata> &records, std::chrono::milliseconds budget);
    /// The record has new texts, or none.
    void forget(const QUuid &id);
    void forgetAll();

private:
    QString folded(const QString &text) const;
    const QString &foldedTexts(const TranscriptRecordMetadata &record);

    /// What was found last, and among what: one more letter is looked for there alone.
    struct Last
    {
        QString wanted;
        QList<TranscriptRecordMetadata> records; ///< shares its elements, so that their address tells it
        QList<TranscriptRecordMetadata> found;
    };

    QLocale m_locale;
    std::optional<Last> m_last;
    QHash<QUuid, QString> m_foldedTexts;
};

} // namespace lumaphone
