#include "translation/ChatCompletionsRequest.h"

#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/TransportError.h"

#include <algorithm>

namespace lumaphone {

namespace {

void checkAddress(const QUrl &endpoint)
{
    const QString scheme = endpoint.scheme();
    if (scheme == QStringLiteral("file") || scheme == QStringLiteral("data")) {
        throw OpenAICompatibleTranslationError(OpenAICompatibleTranslationError::Case::invalidResponse);
    }
    if (scheme != QStringLiteral("http") && scheme != QStringLiteral("https")) {
        throw TransportError::unsupportedAddress(endpoint);
    }
    if (!endpoint.userInfo().isEmpty()) {
        throw TransportError::nameInAddress(endpoint);
    }
}

/// A line break would end the header and begin another one.
bool canBeSentInHeader(const QString &key)
{
    return std::none_of(
        key.begin(), key.end(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; });
}

} // namespace

QNetworkRequest chatCompletionsRequest(
    const QUrl &endpoint, const QString &apiKey, std::chrono::milliseconds timeout)
{
    checkAddress(endpoint);
    QNetworkRequest request(endpoint);
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("User-Agent", "Lumaphone");
    if (!apiKey.isEmpty()) {
        if (!canBeSentInHeader(apiKey)) {
            throw TransportError::unusableKey();
        }
        request.setRawHeader("Authorization", "Bearer " + apiKey.toUtf8());
    }
    request.setTransferTimeout(static_cast<int>(timeout.count()));
    // A redirection must not carry the key, or what was said, to another host.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    return request;
}

} // namespace lumaphone
