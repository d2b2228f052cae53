#pragma once

#include "session/TranslationState.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace lumaphone {

class SystemAudioCaptureController;

/// The lines of the live session for a view, oldest first. A change of one line touches one row, however long
/// the session is.
class CaptionLinesModel final : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The live session's model has one.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool hasPendingTranslation READ hasPendingTranslation NOTIFY hasPendingTranslationChanged)
    Q_PROPERTY(int failedCount READ failedCount NOTIFY failedCountChanged)
    Q_PROPERTY(bool hasTranslatedText READ hasTranslatedText NOTIFY hasTranslatedTextChanged)

public:
    enum Role {
        SourceTextRole = Qt::UserRole + 1,
        TranslatedTextRole, ///< or that there is none
        SourceLanguageRole, ///< raw value, such as "japanese"
        IsFinalRole,
        IsPendingRole, ///< the translation is on its way
        IsFailedRole, ///< there is none, until it is tried again
        FailureRole, ///< why there is none
        TimeRole, ///< when the line was opened, such as "14:05:09"
    };

    /// The controller must outlive the model.
    explicit CaptionLinesModel(const SystemAudioCaptureController &controller, QObject *parent = nullptr);

    int count() const { return int(m_rows.size()); }
    /// Whether some line still waits for its translation.
    bool hasPendingTranslation() const { return m_pending > 0; }
    /// How many lines have no translation and wait for none.
    int failedCount() const { return m_failed; }
    /// Whether some line has a translation side that is not blank.
    bool hasTranslatedText() const { return m_translated > 0; }

    /// What was said in a row.
    const QString &sourceText(int row) const;
    /// Its translation; empty where there is none, whatever a view shows in its place.
    QString translation(int row) const;
    bool hasTranslation(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();
    void hasPendingTranslationChanged();
    void failedCountChanged();
    void hasTranslatedTextChanged();
    /// A line has become final.
    void lineFinished(int row);

private:
    /// What a row contributes to the counts.
    struct Row
    {
        TranslationState translation = TranslationState::pending;
        bool isTranslated = false;
        bool isFinal = false;
    };

    Row rowOf(qsizetype index) const;
    void count(const Row &row, int times);
    void insertRow(qsizetype index);
    void changeRow(qsizetype index);
    void updateTranslationStates();
    void reset();
    void publishCounts();

    const SystemAudioCaptureController &m_controller;
    std::vector<Row> m_rows;
    int m_pending = 0;
    int m_failed = 0;
    int m_translated = 0;
    bool m_publishedPending = false;
    int m_publishedFailed = 0;
    bool m_publishedTranslated = false;
};

} // namespace lumaphone
