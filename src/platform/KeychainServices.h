#pragma once

#include <QByteArray>
#include <QString>

namespace lumaphone {

/// Names generic password items: those of one account of one service.
struct KeychainQuery
{
    QString service;
    QString account;

    bool operator==(const KeychainQuery &) const = default;
};

enum class KeychainStatus {
    success,
    itemNotFound,
    locked, ///< to peek() alone: the item is there, but only the user can open the keychain
    other, ///< no keychain, access refused, still locked: the reason is not told apart
};

struct KeychainReading
{
    KeychainStatus status = KeychainStatus::other;
    QByteArray data; ///< the secret; empty unless the status is success
};

/// The user's keychain. Any thread, several at a time; throws nothing. Calls block until the
/// keychain, and perhaps the user whom it asks to unlock it, has answered. A secret leaves through `data`
/// alone: no error, log or process argument shows it.
class KeychainServices
{
public:
    virtual ~KeychainServices() = default;

    virtual KeychainReading copyMatching(const KeychainQuery &query) = 0;
    /// The same without asking the user for anything.
    virtual KeychainReading peek(const KeychainQuery &query) { return copyMatching(query); }
    /// Replaces the data of the item that exists.
    virtual KeychainStatus update(const KeychainQuery &query, const QByteArray &data) = 0;
    /// Makes a new item.
    virtual KeychainStatus add(const KeychainQuery &query, const QByteArray &data) = 0;
    virtual KeychainStatus remove(const KeychainQuery &query) = 0;
};

} // namespace lumaphone
