#include "speech/hosted/LanguageArbiter.h"

#include <QList>

#include <algorithm>

namespace lumaphone {

namespace {

struct Scripts
{
    bool kana = false;
    bool hangul = false;
    bool han = false;
    bool latin = false;
};

Scripts scriptsIn(const QString &text)
{
    Scripts scripts;
    for (const uint scalar : text.toUcs4()) {
        switch (QChar::script(scalar)) {
        case QChar::Script_Hiragana:
        case QChar::Script_Katakana:
            scripts.kana = true;
            break;
        case QChar::Script_Hangul:
            scripts.hangul = true;
            break;
        case QChar::Script_Han:
            scripts.han = true;
            break;
        case QChar::Script_Latin:
            scripts.latin = true;
            break;
        default:
            break;
        }
    }
    return scripts;
}

/// The language that only this script can be; none for Han and Latin letters, which several languages use.
std::optional<SpokenLanguage> languageOnlyBy(const Scripts &scripts)
{
    if (scripts.kana != scripts.hangul) {
        return scripts.kana ? SpokenLanguage::japanese : SpokenLanguage::korean;
    }
    return std::nullopt;
}

std::optional<SpokenLanguage> likelyLanguage(const Scripts &scripts)
{
    if (const auto certain = languageOnlyBy(scripts)) {
        return certain;
    }
    if (scripts.han) {
        return SpokenLanguage::mandarin;
    }
    return scripts.latin ? std::optional(SpokenLanguage::english) : std::nullopt;
}

bool isWrittenIn(SpokenLanguage language, const Scripts &scripts)
{
    switch (language) {
    case SpokenLanguage::japanese:
        return !scripts.hangul;
    case SpokenLanguage::mandarin:
        return !scripts.hangul && !scripts.kana;
    case SpokenLanguage::korean:
        return !scripts.kana && (!scripts.han || scripts.hangul);
    case SpokenLanguage::english:
        return !scripts.hangul && !scripts.kana && !scripts.han;
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
