#pragma once

#include "platform/KeychainServices.h"

#include <QString>

#include <optional>

namespace lumaphone {

/// A text with the address that it was saved for, which is empty if nobody has said.
struct AddressedText
{
    QString text = {};
    QString address = {};
};

/// What can be told of an account without asking the user to unlock the keychain.
struct KeychainTrace
{
    KeychainStatus status = KeychainStatus::other; ///< success: read() gives a text
    QString address = {}; ///< of that text; empty too while it is locked
};

/// The texts that one service of ours keeps in the user's keychain, one per account. Failures are silent: a
/// text that cannot be read looks like one that is missing.
class LumaphoneKeychain
{
public:
    /// `services` must outlive this value.
    LumaphoneKeychain(KeychainServices &services, QString service);

    const QString &service() const { return m_service; }
    KeychainQuery baseQuery(const QString &account) const;

    /// None when there is no such item, it cannot be had, or its data is not UTF-8. An empty text is a text.
    std::optional<QString> read(const QString &account) const;
    std::optional<AddressedText> readWithAddress(const QString &account) const;
    KeychainTrace peek(const QString &account) const;
    /// Replaces the account's text in place, or adds it.
    void save(const QString &value, const QString &account, const QString &address = {}) const;
    void remove(const QString &account) const;

private:
    KeychainServices *m_services;
    QString m_service;
};

} // namespace lumaphone
