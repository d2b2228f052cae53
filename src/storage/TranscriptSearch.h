#pragma once

#include "storage/TranscriptRecordMetadata.h"

#include <QHash>
#include <QList>
#include <QLocale>
#include <QString>
#include <QUuid>

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
    /// The record has new texts, or none.
    void forget(const QUuid &id);
    void forgetAll();

private:
    QString folded(const QString &text) const;
    const QString &foldedTexts(const TranscriptRecordMetadata &record);

    QLocale m_locale;
    QHash<QUuid, QString> m_foldedTexts;
};

} // namespace lumaphone
