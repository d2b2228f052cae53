#pragma once

#include <QString>

namespace lumaphone::providertexts {

/// What will become of the key, by what is typed and what the keychain holds.
QString apiKeyStatusText(bool isKeyTyped, bool hasProviderAPIKey);
QString apiKeyPlaceholder(bool hasProviderAPIKey);
QString apiKeyCleared();

/// While the test is under way.
QString testing(bool isKeyTyped, bool hasProviderAPIKey);
QString testSucceeded(const QString &translation);

/// What the provider does; `model` is empty while it is not configured.
QString summary(const QString &model, bool isConfigured, bool hasProviderAPIKey);

} // namespace lumaphone::providertexts
