#pragma once

#include "app/library/TranscriptLinesModel.h"
#include "storage/TranscriptDocument.h"

#include <QObject>
#include <QString>

#include <optional>

namespace lumaphone {

/// A transcript of the library as it was read or saved last, and what the user has changed in it since. Main
/// thread.
class EditedTranscript final : public QObject
{
    Q_OBJECT

public:
    EditedTranscript();

    bool isLoaded() const { return m_loaded.has_value(); }
    /// None if there is no transcript to edit.
    std::optional<TranscriptRecordMetadata> loadedMetadata() const;
    const QString &title() const { return m_title; }
    void setTitle(const QString &title);
    const QString &note() const { return m_note; }
    void setNote(const QString &note);
    TranscriptLinesModel *lines() { return &m_lines; }
    /// Whether the lines are shown to be edited.
    bool isEditing() const { return m_isEditing; }
    void setEditing(bool isEditing);
    bool hasUnsavedEdits() const { return m_hasUnsavedEdits; }
    /// The transcript with what the user has changed.
    TranscriptDocument draft() const;

    /// Another transcript takes its place, or none.
    void show(const std::optional<TranscriptDocument> &document);
    /// Takes back what has not been saved.
    void revert();
    /// The draft has been saved like this.
    void noteSaved(const TranscriptDocument &document);
    /// Takes over what was saved elsewhere; what the user has changed stays.
    void takeOver(const TranscriptDocument &stored);

signals:
    void isLoadedChanged();
    void loadedMetadataChanged();
    void titleChanged();
    void noteChanged();
    void isEditingChanged();
    void hasUnsavedEditsChanged();

private:
    void updateUnsavedEdits();

    std::optional<TranscriptDocument> m_loaded; ///< as it was read or saved last
    QString m_title;
    QString m_note;
    TranscriptLinesModel m_lines;
    bool m_linesAreEdited = false;
    bool m_hasUnsavedEdits = false;
    bool m_isEditing = false;
};

} // namespace lumaphone
