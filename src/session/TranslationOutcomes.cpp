#include "session/TranslationOutcomes.h"

#include "base/Text.h"

namespace lumaphone {

namespace {

std::pair<QUuid, QString> keyOf(const LumaphoneCaptionLine &line)
{
    return {line.id, text::canonicalForm(line.sourceText)};
}

} // namespace

LineTranslation TranslationOutcomes::of(const LumaphoneCaptionLine &line) const
{
    if (!isPending(line)) {
        return {TranslationState::arrived};
    }
    const auto key = keyOf(line);
    if (m_answered.contains(key)) {
        return {TranslationState::arrived};
    }
    const auto failed = m_failed.constFind(key.second);
    if (failed != m_failed.cend()) {
        return failed->hasSecondChance ? LineTranslation {}
                                       : LineTranslation {TranslationState::failed, failed->error};
    }
    return m_pauseReason ? LineTranslation {TranslationState::failed, *m_pauseReason} : LineTranslation {};
}

bool TranslationOutcomes::isSecondChance(const QString &text) const
{
    const auto failed = m_failed.constFind(text::canonicalForm(text));
    return failed != m_failed.cend() && failed->hasSecondChance;
}

void TranslationOutcomes::forget(const QString &text)
{
    m_failed.remove(text::canonicalForm(text));
}

void TranslationOutcomes::noteAnswered(const LumaphoneCaptionLine &line)
{
    m_answered.insert(keyOf(line));
}

void TranslationOutcomes::noteSuccess(const QString &text, AppleSystemSpeechLanguage language)
{
    forget(text);
    m_managedLanguages.insert(language);
    m_pauseReason.reset();
    m_timeOutsInARow = 0;
}

void TranslationOutcomes::noteFailure(
    const QString &text, AppleSystemSpeechLanguage language, const QString &error)
{
    const bool standsForAll = isSecondChance(text) && !m_managedLanguages.contains(language);
    m_failed.insert(text::canonicalForm(text), {error, language});
    if (!standsForAll) {
        return;
    }
    for (Failed &failed : m_failed) {
        if (failed.hasSecondChance && failed.language == language) {
            failed = {error, language};
        }
    }
}

bool TranslationOutcomes::noteTimeOut(const QString &error, int limit)
{
    ++m_timeOutsInARow;
    if (isPaused() || m_timeOutsInARow < limit) {
        return false;
    }
    m_pauseReason = error;
    for (Failed &failed : m_failed) {
        if (failed.hasSecondChance) {
            failed = {error, failed.language};
        }
    }
    return true;
}

void TranslationOutcomes::giveSecondChance(
    const LumaphoneCaptionLine &line, AppleSystemSpeechLanguage language)
{
    m_failed.insert(text::canonicalForm(line.sourceText), {of(line).error, language, true});
}

void TranslationOutcomes::trustAgain()
{
    m_managedLanguages.clear();
    m_pauseReason.reset();
    m_timeOutsInARow = 0;
}

} // namespace lumaphone
