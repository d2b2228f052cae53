#include "app/library/EditedTranscript.h"

#include "base/SetAndNotify.h"

namespace lumaphone {

EditedTranscript::EditedTranscript()
{
    connect(&m_lines, &TranscriptLinesModel::edited, this, [this] {
        m_linesAreEdited = true;
        updateUnsavedEdits();
    });
}

std::optional<TranscriptRecordMetadata> EditedTranscript::loadedMetadata() const
{
    return m_loaded ? std::optional(m_loaded->metadata) : std::nullopt;
}

void EditedTranscript::setTitle(const QString &title)
{
    if (setAndNotify(this, m_title, title, &EditedTranscript::titleChanged)) {
        updateUnsavedEdits();
    }
}

void EditedTranscript::setNote(const QString &note)
{
    if (setAndNotify(this, m_note, note, &EditedTranscript::noteChanged)) {
        updateUnsavedEdits();
    }
}

void EditedTranscript::setEditing(bool isEditing)
{
    setAndNotify(this, m_isEditing, isEditing && isLoaded(), &EditedTranscript::isEditingChanged);
}

TranscriptDocument EditedTranscript::draft() const
{
    TranscriptDocument document = m_loaded.value_or(TranscriptDocument());
    document.metadata.title = m_title;
    document.metadata.note = m_note;
    document.lines = m_lines.lines();
    return document;
}

void EditedTranscript::show(const std::optional<TranscriptDocument> &document)
{
    const bool wasLoaded = isLoaded();
    m_loaded = document;
    m_linesAreEdited = false;
    setEditing(false);
    setTitle(document ? document->metadata.title : QString());
    setNote(document ? document->metadata.note : QString());
    m_lines.setLines(document ? document->lines : QList<SavedTranscriptLine>());
    updateUnsavedEdits();
    emit loadedMetadataChanged();
    if (wasLoaded != isLoaded()) {
        emit isLoadedChanged();
    }
}

void EditedTranscript::revert()
{
    show(std::optional(m_loaded));
}

void EditedTranscript::noteSaved(const TranscriptDocument &document)
{
    m_loaded = document;
    m_linesAreEdited = false;
    updateUnsavedEdits();
    emit loadedMetadataChanged();
}

void EditedTranscript::takeOver(const TranscriptDocument &stored)
{
    const bool titleIsEdited = m_title != m_loaded->metadata.title;
    const bool noteIsEdited = m_note != m_loaded->metadata.note;
    m_loaded = stored;
    if (!titleIsEdited) {
        setTitle(stored.metadata.title);
    }
    if (!noteIsEdited) {
        setNote(stored.metadata.note);
    }
    if (!m_linesAreEdited) {
        m_lines.setLines(stored.lines);
    }
    updateUnsavedEdits();
    emit loadedMetadataChanged();
}

void EditedTranscript::updateUnsavedEdits()
{
    const bool differs = m_loaded
        && (m_linesAreEdited || m_title != m_loaded->metadata.title || m_note != m_loaded->metadata.note);
    setAndNotify(this, m_hasUnsavedEdits, differs, &EditedTranscript::hasUnsavedEditsChanged);
}

} // namespace lumaphone
