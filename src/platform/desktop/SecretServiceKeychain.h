#pragma once

#include "platform/KeychainServices.h"

namespace lumaphone {

/// The keychain of the desktop, reached over the session bus (GNOME Keyring, KWallet, KeePassXC). New items
/// go into the user's default collection; a locked one makes the keychain ask the user.
class SecretServiceKeychain final : public KeychainServices
{
public:
    KeychainReading copyMatching(const KeychainQuery &query) override;
    KeychainReading peek(const KeychainQuery &query) override;
    KeychainStatus update(const KeychainQuery &query, const QByteArray &data) override;
    KeychainStatus add(const KeychainQuery &query, const QByteArray &data) override;
    KeychainStatus remove(const KeychainQuery &query) override;
};

} // namespace lumaphone
