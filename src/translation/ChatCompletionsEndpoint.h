#pragma once

#include <QString>
#include <QUrl>

namespace lumaphone {

/// The address that requests go to, from a base URL as a person types it: with or without a version segment,
/// with or without "chat/completions" and slashes at the end. A text without a scheme is taken as a relative
/// reference, which no request can be sent to. Throws OpenAICompatibleTranslationError (invalidBaseURL).
QUrl chatCompletionsURL(const QString &baseURL);

} // namespace lumaphone
