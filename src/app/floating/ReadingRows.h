#pragma once

#include "app/floating/ReadingPage.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace lumaphone {

/// The lines of a page for a view. What stays is neither made anew nor moved.
class ReadingRows final : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The reader has one.")

public:
    enum Role {
        SourceTextRole = Qt::UserRole + 1,
        SourceLanguageRole, ///< raw value, such as "japanese"
        TranslationTextRole,
    };

    explicit ReadingRows(QObject *parent)
        : QAbstractListModel(parent)
    {
    }

    const std::vector<ReadingPage::Row> &rows() const { return m_rows; }
    /// Keys grow from row to row.
    void show(std::vector<ReadingPage::Row> rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void removeWhatHasLeft(const std::vector<ReadingPage::Row> &rows);

    std::vector<ReadingPage::Row> m_rows;
};

} // namespace lumaphone
