#pragma once

#include "session/FloatingCaptionPresenter.h"

#include <QStringList>

namespace lumaphone::test {

/// A caption panel that remembers what it was told to show, as "source | translation".
class RecordingFloatingCaptions final : public FloatingCaptionPresenter
{
public:
    void show(const QString &sourceText, const QString &translationText) override
    {
        open = true;
        translation = translationText;
        shown.append(sourceText + QStringLiteral(" | ") + translationText);
    }
    bool isOpen() const override { return open; }
    QString currentTranslationText() const override { return translation; }

    bool open = false;
    QString translation;
    QStringList shown;
};

} // namespace lumaphone::test
