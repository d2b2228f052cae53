#pragma once

#include "base/LocalizedError.h"
#include "language/AppleSystemSpeechLanguage.h"

#include <QCoroTask>
#include <QString>

#include <stop_token>

namespace lumaphone {

/// The provider was not asked, for a reason that the user was told when it arose.
class TranslationWithheld : public PlatformError
{
public:
    using PlatformError::PlatformError;
};

/// Translates one caption text through whatever provider the user has chosen. The session calls it on the
/// main thread.
class CaptionTranslator
{
public:
    virtual ~CaptionTranslator() = default;
    /// Whether texts are to be translated at all; if not, nothing is asked of the translator. Throws nothing.
    virtual bool translates() const { return true; }
    /// The provider's name in messages. Throws nothing.
    virtual QString providerName() const = 0;
    /// The translation; a Mandarin text is its own. Throws what the provider throws. `stop` is requested when
    /// nobody waits for the translation any more; an error is then ignored.
    virtual QCoro::Task<QString> translateText(
        QString text, AppleSystemSpeechLanguage language, std::stop_token stop)
        = 0;
    /// The user asks again, or something has changed: what was refused may be asked for once more.
    virtual void askAgain() { }
    /// Makes the provider ready for a language ahead of the first text and returns at once. Failures are not
    /// shown; throws nothing.
    virtual void warm(AppleSystemSpeechLanguage language) = 0;
};

} // namespace lumaphone
