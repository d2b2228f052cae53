#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>
#include <QUuid>

namespace lumaphone {

struct CaptionTranslation
{
    QString text;
    QString translation;
    AppleSystemSpeechLanguage language; ///< it was translated from
};

/// Told about every translation on the main thread.
class TranslationReceiver
{
public:
    virtual ~TranslationReceiver() = default;
    virtual void translationArrived(const CaptionTranslation &translation) = 0;
    virtual void translationFailed(const QString &text, const QString &description) = 0;
    /// The text scheduled now is the one translated last, so that nothing is requested.
    virtual void translationWasKnown(const CaptionTranslation &translation) = 0;
    /// A line that newer texts had passed over has its translation.
    virtual void passedOverLineTranslated(const QUuid &line, const CaptionTranslation &translation) = 0;
    virtual void passedOverLineFailed(const QString &text, const QString &description) = 0;
    /// A line that was on the screen when its session was saved has its translation.
    virtual void lateTranslationArrived(const QUuid &transcript, const CaptionTranslation &translation) = 0;
    /// What is known of lines without a translation has changed.
    virtual void translationStatesDidChange() = 0;
    /// The provider has left several requests in a row unanswered: only new texts are tried, until one of
    /// them succeeds or the user asks. Told once.
    virtual void translationPaused() = 0;
    /// Nothing is left to translate.
    virtual void translationRested() = 0;
};

} // namespace lumaphone
