#pragma once

#include "storage/TranscriptRecordMetadata.h"

#include <QAbstractListModel>
#include <QList>
#include <QLocale>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace lumaphone {

/// The records of the library's list, each with its identity, title and subtitle. A new list is taken over
/// row by row, so that views keep their place.
class TranscriptLibraryModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The workspace has the one model.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        RecordIdRole = Qt::UserRole + 1, ///< text
        TitleRole,
        SubtitleRole,
    };

    /// Dates are written as in `locale`.
    explicit TranscriptLibraryModel(const QLocale &locale, QObject *parent = nullptr);

    int count() const { return static_cast<int>(m_rows.size()); }
    const QList<TranscriptRecordMetadata> &records() const { return m_records; }
    /// Shows these records instead. Each has an identity of its own.
    void setRecords(const QList<TranscriptRecordMetadata> &records);
    /// -1 if the record is not in the list.
    int rowOf(const QUuid &id) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

private:
    using Rows = std::vector<const TranscriptRecordMetadata *>;

    std::vector<bool> rowsThatStay(const QHash<QUuid, int> &positions) const;
    std::size_t runsOfChange(const std::vector<bool> &stays, const QHash<QUuid, int> &positions) const;
    void removeMissingRows(const std::vector<bool> &stays);
    void replaceMiddle(const Rows &wanted);
    void insertMissingRows(const Rows &wanted);
    void replaceRows(const Rows &wanted);

    QLocale m_locale;
    QList<TranscriptRecordMetadata> m_records;
    Rows m_rows; ///< point into m_records; light, so that rows come and go quickly
};

} // namespace lumaphone
