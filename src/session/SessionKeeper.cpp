#include "session/SessionKeeper.h"

#include "base/SetAndNotify.h"
#include "session/CaptionLineList.h"
#include "session/SessionTexts.h"

#include <utility>

namespace lumaphone {

SessionKeeper::SessionKeeper(
    LumaphoneSessionDraftStore draftStore, std::shared_ptr<Clock> clock, const CaptionLineList &lines)
    : m_draftStore(std::move(draftStore))
    , m_clock(std::move(clock))
    , m_lines(lines)
{
}

void SessionKeeper::begin()
{
    setAndNotify(this, m_startedAt, m_clock->now(), &SessionKeeper::startedAtChanged);
    setAndNotify(this, m_endedAt, {}, &SessionKeeper::endedAtChanged);
    forget();
}

void SessionKeeper::end()
{
    if (!m_lines.isEmpty() && !m_endedAt) {
        setAndNotify(this, m_endedAt, m_clock->now(), &SessionKeeper::endedAtChanged);
    }
}

void SessionKeeper::forget()
{
    setAndNotify(this, m_savedTranscriptID, {}, &SessionKeeper::savedTranscriptIDChanged);
    setAndNotify(this, m_savedTranscriptTitle, {}, &SessionKeeper::savedTranscriptTitleChanged);
    setAndNotify(this, m_restoredDraftMessage, {}, &SessionKeeper::restoredDraftMessageChanged);
    m_draftStore.clear();
}

void SessionKeeper::markSaved(const QUuid &id, const QString &title)
{
    setAndNotify(this, m_savedTranscriptID, id, &SessionKeeper::savedTranscriptIDChanged);
    setAndNotify(this, m_savedTranscriptTitle, title, &SessionKeeper::savedTranscriptTitleChanged);
    setAndNotify(this, m_restoredDraftMessage, {}, &SessionKeeper::restoredDraftMessageChanged);
}

void SessionKeeper::saveDraftIfNeeded(AppleSystemSpeechLanguage sourceLanguage,
    const std::optional<AppleSystemSpeechLanguage> &detectedLanguage)
{
    if (m_savedTranscriptID || m_lines.isEmpty()) {
        m_draftStore.clear();
        return;
    }
    m_draftStore.save({
        .lines = m_lines.lines(),
        .sourceLanguage = sourceLanguage,
        .detectedLanguage = detectedLanguage,
        .startedAt = m_startedAt,
        .endedAt = m_endedAt,
        .updatedAt = m_clock->now(),
    });
}

std::optional<LumaphoneSessionDraft> SessionKeeper::restoreDraft()
{
    auto draft = m_draftStore.load();
    if (!draft || draft->lines.isEmpty()) {
        return std::nullopt;
    }
    setAndNotify(this, m_startedAt, draft->startedAt, &SessionKeeper::startedAtChanged);
    setAndNotify(this, m_endedAt, draft->endedAt, &SessionKeeper::endedAtChanged);
    setAndNotify(
        this, m_restoredDraftMessage, texts::draftRestored(), &SessionKeeper::restoredDraftMessageChanged);
    return draft;
}

} // namespace lumaphone
