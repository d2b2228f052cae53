#pragma once

#include "base/LocalizedError.h"

namespace lumaphone {

/// What a chat-completions endpoint, or the configuration of one, can get wrong.
class OpenAICompatibleTranslationError : public LocalizedError
{
public:
    enum class Case { httpFailure, missingConfiguration, invalidBaseURL, invalidResponse, emptyResponse };

    /// A status outside 200...299. `body` is shown as it is: already shortened and without secrets.
    static OpenAICompatibleTranslationError httpFailure(int status, const QString &body);
    /// Any case without a payload.
    explicit OpenAICompatibleTranslationError(Case errorCase);

    Case errorCase() const noexcept { return m_case; }
    int status() const noexcept { return m_status; } ///< of httpFailure, else 0
    const QString &body() const noexcept { return m_body; } ///< of httpFailure, else empty

private:
    OpenAICompatibleTranslationError(Case errorCase, int status, const QString &body);

    Case m_case;
    int m_status;
    QString m_body;
};

} // namespace lumaphone
