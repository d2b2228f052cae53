#include "session/FloatingCaptionMirror.h"

#include "base/Text.h"
#include "session/CaptionLineList.h"
#include "session/CaptionTranslation.h"
#include "session/FloatingCaptionPresenter.h"

namespace lumaphone {

FloatingCaptionMirror::FloatingCaptionMirror(FloatingCaptionPresenter &panel, const CaptionLineList &lines)
    : m_panel(panel)
    , m_lines(lines)
{
}

void FloatingCaptionMirror::showNotice(const QString &title, const QString &message)
{
    m_isShowingError = false;
    m_panel.show(title, message);
}

void FloatingCaptionMirror::showTranslationError(const QString &title, const QString &description)
{
    m_isShowingError = true;
    m_panel.show(title, description);
}

void FloatingCaptionMirror::updateFloatingCaptionForLiveSource(
    const QString &text, AppleSystemSpeechLanguage language)
{
    if (const auto index = m_lines.newestIndexOf(text)) {
        const LumaphoneCaptionLine &line = m_lines.lines().at(*index);
        const QString translation = text::trimmed(line.translatedText);
        if (!translation.isEmpty() && !isPending(line)) {
            show({text, translation, language});
            return;
        }
    }
    if (m_panel.isOpen()) {
        // A new partial result never blanks the last translation.
        m_panel.showSpoken(text, language, m_panel.currentTranslationText());
    }
}

void FloatingCaptionMirror::showTranslation(const CaptionTranslation &translation)
{
    if (m_panel.isOpen()) {
        show(translation);
    }
}

void FloatingCaptionMirror::clearTranslationError()
{
    if (!m_isShowingError || !m_panel.isOpen()) {
        return;
    }
    if (m_lines.isEmpty()) {
        showNotice({}, {});
        return;
    }
    const LumaphoneCaptionLine &newest = m_lines.lines().constLast();
    show({newest.sourceText, isPending(newest) ? QString() : newest.translatedText, newest.sourceLanguage});
}

void FloatingCaptionMirror::show(const CaptionTranslation &translation)
{
    m_isShowingError = false;
    m_panel.showSpoken(translation.text, translation.language, translation.translation);
}

} // namespace lumaphone
