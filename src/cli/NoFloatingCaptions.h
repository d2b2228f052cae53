#pragma once

#include "session/FloatingCaptionPresenter.h"

namespace lumaphone::cli {

/// A terminal has no panel.
class NoFloatingCaptions final : public FloatingCaptionPresenter
{
public:
    void show(const QString & /*sourceText*/, const QString & /*translationText*/) override { }
    bool isOpen() const override { return false; }
    QString currentTranslationText() const override { return {}; }
};

} // namespace lumaphone::cli
