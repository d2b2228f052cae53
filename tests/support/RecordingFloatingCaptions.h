#pragma once

#include "session/FloatingCaptionPresenter.h"

#include <QStringList>

#include <optional>

namespace lumaphone::test {

/// A caption panel that remembers what it was told to show, as "source | translation".
class RecordingFloatingCaptions final : public FloatingCaptionPresenter
{
public:
    void show(const QString &sourceText, const QString &translationText) override
    {
        open = true;
        language.reset();
        translation = translationText;
        shown.append(sourceText + QStringLiteral(" | ") + translationText);
    }
    void showSpoken(const QString &sourceText, AppleSystemSpeechLanguage spokenLanguage,
        const QString &translationText) override
    {
        show(sourceText, translationText);
        language = spokenLanguage;
    }
    bool isOpen() const override { return open; }
    QString currentTranslationText() const override { return translation; }

    bool open = false;
    QString translation;
    std::optional<AppleSystemSpeechLanguage> language; ///< of the source text shown now; none for a message
    QStringList shown;
};

} // namespace lumaphone::test
