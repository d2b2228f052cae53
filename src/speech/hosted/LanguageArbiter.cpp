#include "speech/hosted/LanguageArbiter.h"

#include "language/LanguageTable.h"

#include <algorithm>

namespace lumaphone {

namespace {

std::optional<SpokenLanguage> firstKnownBy(Script script)
{
    const auto rows = languageTable();
    const auto found = std::find_if(
        rows.begin(), rows.end(), [script](const LanguageRow &row) { return row.script == script; });
    return found == rows.end() ? std::nullopt : std::optional(found->language);
}

/// The language that only this script can be; none for Han and Latin letters, which several languages use.
std::optional<SpokenLanguage> languageOnlyBy(Scripts scripts)
{
    if (scripts.has(Script::kana) != scripts.has(Script::hangul)) {
        return firstKnownBy(scripts.has(Script::kana) ? Script::kana : Script::hangul);
    }
    return std::nullopt;
}

std::optional<SpokenLanguage> likelyLanguage(Scripts scripts)
{
    if (const auto certain = languageOnlyBy(scripts)) {
        return certain;
    }
    if (scripts.has(Script::han)) {
        return firstKnownBy(Script::han);
    }
    return scripts.has(Script::latin) ? firstKnownBy(Script::latin) : std::nullopt;
}

/// Latin letters may stand in texts of every language.
bool isWrittenIn(SpokenLanguage language, Scripts scripts)
{
    const bool hasKana = scripts.has(Script::kana);
    const bool hasHangul = scripts.has(Script::hangul);
    const bool hasHan = scripts.has(Script::han);
    switch (language) {
    case SpokenLanguage::japanese:
        return !hasHangul;
    case SpokenLanguage::mandarin:
        return !hasHangul && !hasKana;
    case SpokenLanguage::korean:
        return !hasKana && (!hasHan || hasHangul);
    case SpokenLanguage::english:
        return !hasHangul && !hasKana && !hasHan;
    }
    Q_UNREACHABLE();
}

} // namespace

LanguageArbiter::LanguageArbiter(std::vector<SpokenLanguage> candidates)
    : m_candidates(std::move(candidates))
{
}

std::optional<SpokenLanguage> LanguageArbiter::decide(const Hearing &hearing)
{
    if (m_candidates.size() == 1) {
        return m_candidates.front();
    }
    if (m_segment != hearing.segment) {
        m_segment = hearing.segment;
        m_shown.reset();
        m_challenger.reset();
        m_agreeing = 0;
    }
    return hearing.isFinal ? decideFinal(hearing) : decideVolatile(hearing);
}

std::optional<SpokenLanguage> LanguageArbiter::decideFinal(const Hearing &hearing)
{
    auto language = named(hearing);
    const Scripts scripts = scriptsIn(hearing.text);
    if (hearing.speech < shortestOwnLanguage && m_previous) {
        const auto certain = ifCandidate(languageOnlyBy(scripts));
        if (certain) {
            language = certain;
        } else if (isWrittenIn(*m_previous, scripts)) {
            language = m_previous;
        }
    }
    language = ifCandidate(language);
    if (language) {
        m_previous = language;
    }
    m_segment.reset();
    return language;
}

std::optional<SpokenLanguage> LanguageArbiter::decideVolatile(const Hearing &hearing)
{
    const auto language = ifCandidate(named(hearing));
    if (hearing.speech < shortestVolatile || !language) {
        return std::nullopt;
    }
    if (!m_shown || language == m_shown) {
        m_challenger.reset();
        m_agreeing = 0;
        m_shown = language;
        return m_shown;
    }
    m_agreeing = m_challenger == language ? m_agreeing + 1 : 1;
    m_challenger = language;
    if (m_agreeing < agreeingDecodes || hearing.speech < shortestChange) {
        return std::nullopt;
    }
    m_shown = language;
    m_challenger.reset();
    m_agreeing = 0;
    return m_shown;
}

std::optional<SpokenLanguage> LanguageArbiter::named(const Hearing &hearing) const
{
    return hearing.language ? hearing.language : likelyLanguage(scriptsIn(hearing.text));
}

std::optional<SpokenLanguage> LanguageArbiter::ifCandidate(std::optional<SpokenLanguage> language) const
{
    if (language && std::find(m_candidates.begin(), m_candidates.end(), *language) == m_candidates.end()) {
        return std::nullopt;
    }
    return language;
}

} // namespace lumaphone
