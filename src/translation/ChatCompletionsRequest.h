#pragma once

#include <QNetworkRequest>
#include <QString>
#include <QUrl>

#include <chrono>

namespace lumaphone {

/// The headers and options of one request. The key is sent exactly as given, and only when it is not empty.
/// Throws TransportError (unsupportedAddress, nameInAddress, unusableKey), and
/// OpenAICompatibleTranslationError (invalidResponse) for the address of a local file, whose contents would
/// come without HTTP.
QNetworkRequest chatCompletionsRequest(
    const QUrl &endpoint, const QString &apiKey, std::chrono::milliseconds timeout);

} // namespace lumaphone
