#pragma once

#include "platform/KeychainServices.h"

#include <memory>

namespace lumaphone {

/// The keychain of the desktop, reached over the session bus (GNOME Keyring, KWallet, KeePassXC). New items
/// go into the user's default collection; a locked one makes the keychain ask the user.
class SecretServiceKeychain final : public KeychainServices
{
public:
    SecretServiceKeychain();
    ~SecretServiceKeychain() override;

    KeychainReading copyMatching(const KeychainQuery &query) override;
    KeychainReading peek(const KeychainQuery &query) override;
    KeychainStatus update(const KeychainQuery &query, const KeychainSecret &secret) override;
    KeychainStatus add(const KeychainQuery &query, const KeychainSecret &secret) override;
    KeychainStatus remove(const KeychainQuery &query) override;
    void abandon() override;

private:
    class Connection;

    const std::unique_ptr<Connection> m_connection;
};

} // namespace lumaphone
