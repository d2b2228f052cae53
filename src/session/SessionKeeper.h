#pragma once

#include "language/AppleSystemSpeechLanguage.h"
#include "platform/Clock.h"
#include "session/LumaphoneSessionDraft.h"
#include "session/LumaphoneSessionDraftStore.h"

#include <QDateTime>
#include <QObject>
#include <QUuid>

#include <memory>
#include <optional>

namespace lumaphone {

class CaptionLineList;

/// Keeps what belongs to a session beside its lines: when it was, whether the library has it and, as long as
/// it has not, its draft. Main thread.
class SessionKeeper final : public QObject
{
    Q_OBJECT

public:
    /// The lines outlive the keeper.
    SessionKeeper(
        LumaphoneSessionDraftStore draftStore, std::shared_ptr<Clock> clock, const CaptionLineList &lines);

    const std::optional<QDateTime> &startedAt() const { return m_startedAt; }
    const std::optional<QDateTime> &endedAt() const { return m_endedAt; }
    /// The library record that the session was saved as.
    const std::optional<QUuid> &savedTranscriptID() const { return m_savedTranscriptID; }
    const std::optional<QString> &savedTranscriptTitle() const { return m_savedTranscriptTitle; }
    const std::optional<QString> &restoredDraftMessage() const { return m_restoredDraftMessage; }

    /// Another session begins now, and nothing is kept of it yet.
    void begin();
    /// The session ends now, unless it has ended or has no lines.
    void end();
    /// The lines are gone: neither library nor draft has them.
    void forget();
    /// The library has saved the session under this identity.
    void markSaved(const QUuid &id, const QString &title);

    /// A save point of the draft. There is none of a session without lines, or of one that the library has.
    void saveDraftIfNeeded(AppleSystemSpeechLanguage sourceLanguage,
        const std::optional<AppleSystemSpeechLanguage> &detectedLanguage);
    /// The session of a draft that has lines becomes this one; the lines are the caller's to take.
    std::optional<LumaphoneSessionDraft> restoreDraft();

signals:
    void startedAtChanged();
    void endedAtChanged();
    void savedTranscriptIDChanged();
    void savedTranscriptTitleChanged();
    void restoredDraftMessageChanged();

private:
    LumaphoneSessionDraftStore m_draftStore;
    const std::shared_ptr<Clock> m_clock;
    const CaptionLineList &m_lines;
    std::optional<QDateTime> m_startedAt;
    std::optional<QDateTime> m_endedAt;
    std::optional<QUuid> m_savedTranscriptID;
    std::optional<QString> m_savedTranscriptTitle;
    std::optional<QString> m_restoredDraftMessage;
};

} // namespace lumaphone
