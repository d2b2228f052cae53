#pragma once

#include "storage/KeychainRunner.h"
#include "storage/LumaphoneKeychain.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumaphone {

class DefaultsStore;

enum class ProviderKeyPresence {
    unknown, ///< the keychain has not answered yet
    absent,
    present, ///< perhaps locked
};

/// The translation service's key: what is known of it, and the way to it in the keychain. A key belongs to
/// the server that was configured when it was saved, and nobody else is given it. Main thread.
class ProviderKeyStore final : public QObject
{
    Q_OBJECT

public:
    /// `address`: the configured server, as providerAddress() names it. Looks at once whether there is a key.
    ProviderKeyStore(
        DefaultsStore &defaults, LumaphoneKeychain keychain, KeychainRunner run, QString address);

    const LumaphoneKeychain &keychain() const { return m_keychain; }
    /// What the keychain said when this was made, and what has been asked of it since, whatever came of it.
    ProviderKeyPresence presence() const { return m_presence; }
    /// Of the server that the key is for; of the configured one until the keychain has told.
    const QString &address() const { return m_keyAddress; }

    const QString &configuredAddress() const { return m_configuredAddress; }
    void setConfiguredAddress(const QString &address);
    /// Hands over the key that the keychain holds then, with its address, or two empty texts.
    void read(std::function<void(const AddressedText &key)> take);
    /// The same on the calling thread, which waits.
    AddressedText readNow() const;
    /// Whether somebody has given up waiting for an answer that the keychain still owes.
    bool isOverdue() const { return m_isOverdue; }
    void noteOverdue() { m_isOverdue = true; }
    /// Keeps the key for the configured server; an empty one deletes what is there.
    void save(const QString &key);
    /// Whether a key is on its way into the keychain: the one that is read there may be another's.
    bool isSaving() const { return m_saves > 0; }

signals:
    /// Presence or address.
    void changed();
    /// The answer that somebody has given up waiting for: there is a key.
    void found();
    /// It has taken a key, or its deletion, as far as it would.
    void saved();

private:
    using Readers = std::vector<std::function<void(const AddressedText &)>>;

    void look();
    void noteTrace(const KeychainTrace &trace);
    void hand(AddressedText key, const std::shared_ptr<Readers> &readers);
    void noteSaved();
    void note(ProviderKeyPresence presence, const QString &address);
    void noteAnswer(bool isKeyThere);
    /// `address`, or the server of a key that was saved before keys had one.
    QString serverOf(const QString &address) const;

    DefaultsStore &m_defaults;
    const LumaphoneKeychain m_keychain;
    const KeychainRunner m_run;
    QString m_configuredAddress;
    QString m_keyAddress;
    ProviderKeyPresence m_presence = ProviderKeyPresence::unknown;
    bool m_mayHaveNoAddress = true; ///< the key, for all that is known
    bool m_isOverdue = false;
    std::shared_ptr<Readers> m_readers; ///< who waits for the reading that has been asked for last
    int m_saves = 0; ///< that have not ended
};

} // namespace lumaphone
