#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

namespace lumaphone {

/// The caption panel, as the session uses it. Main thread; throws nothing.
class FloatingCaptionPresenter
{
public:
    virtual ~FloatingCaptionPresenter() = default;
    /// Shows both lines, in a new panel if none is open.
    virtual void show(const QString &sourceText, const QString &translationText) = 0;
    /// The same for a source text that was said in `language`, whose glyphs it may be drawn with.
    virtual void showSpoken(
        const QString &sourceText, AppleSystemSpeechLanguage /*language*/, const QString &translationText)
    {
        show(sourceText, translationText);
    }
    /// Whether a panel is open.
    virtual bool isOpen() const = 0;
    /// The translation line shown now; empty while no panel is open.
    virtual QString currentTranslationText() const = 0;
};

} // namespace lumaphone
