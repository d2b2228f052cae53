#pragma once

#include "base/LocalizedError.h"

#include <QCoroTask>
#include <QString>

#include <memory>
#include <stop_token>

namespace lumaphone {

/// A language as a translation framework knows it, made from an identifier such as "en" or "zh-Hant".
struct LocaleLanguage
{
    QString identifier;

    bool operator==(const LocaleLanguage &) const = default;
};

enum class LanguageAvailabilityStatus {
    installed, ///< what the pair needs is on this machine
    supported, ///< can be had after prepareTranslation()
    unsupported,
};

struct TranslationResponse
{
    QString targetText;
};

/// An error of the framework or of an engine behind it, shown with the text it carries.
class TranslationFrameworkError : public PlatformError
{
public:
    using PlatformError::PlatformError;
};

/// Translates texts of one language pair without any user interface. Main thread.
/// `stop` is requested on the main thread when nobody wants the result any more; the call then ends early
/// with a TranslationFrameworkError.
class TranslationSession
{
public:
    virtual ~TranslationSession() = default;
    /// Whether the models of the pair are in place. Throws nothing.
    virtual QCoro::Task<bool> isReady() = 0;
    /// Fetches or loads the models, off the main thread. Throws TranslationFrameworkError.
    virtual QCoro::Task<> prepareTranslation(std::stop_token stop) = 0;
    /// Throws TranslationFrameworkError.
    virtual QCoro::Task<TranslationResponse> translate(QString text, std::stop_token stop) = 0;
};

/// On-device translation. Main thread. It outlives the services that use it.
class TranslationFramework
{
public:
    virtual ~TranslationFramework() = default;
    /// What can be had for a pair now. Throws nothing.
    virtual QCoro::Task<LanguageAvailabilityStatus> status(LocaleLanguage source, LocaleLanguage target) = 0;
    /// A session that uses installed models only; loads nothing yet. Never null; throws nothing.
    virtual std::shared_ptr<TranslationSession> makeSession(
        const LocaleLanguage &source, const LocaleLanguage &target)
        = 0;
};

} // namespace lumaphone
