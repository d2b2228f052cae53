#pragma once

#include <QString>

namespace lumaphone {
class ProviderKeyStore;
}

namespace lumaphone::providertexts {

/// What the keychain holds for the server in question.
enum class SavedKey {
    unknown, ///< it has not answered yet
    none,
    ofThisServer,
    ofAnotherServer,
};

SavedKey savedKey(const ProviderKeyStore &store, const QString &address);

/// What will become of the key, by what is typed and what is saved for whom.
QString apiKeyStatusText(bool isKeyTyped, SavedKey saved, const QString &addressOfSaved);
QString apiKeyPlaceholder(SavedKey saved);
QString apiKeyCleared();

/// While the test is under way.
QString testing(bool isKeyTyped, SavedKey saved);
QString testSucceeded(const QString &translation);

/// What the provider does; `model` is empty while it is not configured.
QString summary(const QString &model, bool isConfigured, SavedKey saved);

} // namespace lumaphone::providertexts
