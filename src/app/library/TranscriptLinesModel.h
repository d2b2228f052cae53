#pragma once

#include "storage/SavedTranscriptLine.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// The lines of the opened transcript, which can be edited: source and translation are set through their
/// roles.
class TranscriptLinesModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The workspace has the one model.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        SourceTextRole = Qt::UserRole + 1,
        TranslatedTextRole,
        NumberRole, ///< counted from 1
        SourceLanguageRole, ///< its raw value, such as "japanese"
    };

    explicit TranscriptLinesModel(QObject *parent = nullptr);

    int count() const { return static_cast<int>(m_lines.size()); }
    const QList<SavedTranscriptLine> &lines() const { return m_lines; }
    void setLines(const QList<SavedTranscriptLine> &lines);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();
    /// The user has changed a text.
    void edited();

private:
    QList<SavedTranscriptLine> m_lines;
};

} // namespace lumaphone
