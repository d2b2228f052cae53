#pragma once

#include "base/LocalizedError.h"

#include <QString>

#include <exception>

namespace lumaphone {

/// Why a transcriber cannot start.
class AppleSystemSpeechTranscriberError : public LocalizedError
{
public:
    enum class Case { assetUnavailable, notAuthorized, recognizerUnavailable, automaticLanguagesUnavailable };

    /// `language`: display name, or several joined. The text ends in what `cause` says, or in guidance when
    /// the cause is a language that was never set up for dictation.
    static AppleSystemSpeechTranscriberError assetUnavailable(
        const QString &language, const std::exception_ptr &cause);
    static AppleSystemSpeechTranscriberError notAuthorized();
    static AppleSystemSpeechTranscriberError recognizerUnavailable();
    static AppleSystemSpeechTranscriberError automaticLanguagesUnavailable();

    Case errorCase() const { return m_case; }
    const QString &language() const { return m_language; } ///< `assetUnavailable` only
    const QString &detail() const { return m_detail; } ///< `assetUnavailable` only

private:
    explicit AppleSystemSpeechTranscriberError(
        Case errorCase, const QString &language = {}, const QString &detail = {});

    Case m_case;
    QString m_language;
    QString m_detail;
};

} // namespace lumaphone
