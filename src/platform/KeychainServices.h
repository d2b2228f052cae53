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

/// The address of an item that belongs to nobody, as while another secret is being put into it.
inline const auto noKeychainAddress = QStringLiteral("-");

/// What an item holds.
struct KeychainSecret
{
    QByteArray data = {}; ///< the secret
    QString address = {}; ///< whom it is for, no secret itself; empty if nobody has said
};

struct KeychainReading
{
    KeychainStatus status = KeychainStatus::other;
    KeychainSecret secret = {}; ///< its data is empty unless the status is success
};

/// The user's keychain. Any thread, several at a time; throws nothing. Calls block until the
/// keychain, and perhaps the user whom it asks to unlock it, has answered. A secret leaves through `data`
/// alone: no error, log or process argument shows it. Who reads while it is being replaced gets no data with
/// another's address.
class KeychainServices
{
public:
    virtual ~KeychainServices() = default;

    virtual KeychainReading copyMatching(const KeychainQuery &query) = 0;
    /// The same without asking the user for anything.
    virtual KeychainReading peek(const KeychainQuery &query) { return copyMatching(query); }
    /// Replaces what the item that exists holds.
    virtual KeychainStatus update(const KeychainQuery &query, const KeychainSecret &secret) = 0;
    /// Makes a new item.
    virtual KeychainStatus add(const KeychainQuery &query, const KeychainSecret &secret) = 0;
    virtual KeychainStatus remove(const KeychainQuery &query) = 0;
    /// Calls under way end as soon as the keychain lets them, later ones at once: all with `other`.
    virtual void abandon() { }
};

} // namespace lumaphone
