#include "storage/ProviderKeyStore.h"

#include "platform/DefaultsStore.h"
#include "storage/SettingKeys.h"

#include <QPointer>

#include <utility>

namespace lumaphone {

namespace {

const auto account = QStringLiteral("lumaphone.provider.apiKey");

} // namespace

ProviderKeyStore::ProviderKeyStore(
    DefaultsStore &defaults, LumaphoneKeychain keychain, KeychainRunner run, QString address)
    : m_defaults(defaults)
    , m_keychain(std::move(keychain))
    , m_run(std::move(run))
    , m_configuredAddress(std::move(address))
    , m_keyAddress(m_configuredAddress)
{
    look();
}

void ProviderKeyStore::look()
{
    const auto trace = std::make_shared<KeychainTrace>();
    m_run(
        KeychainCall::reads, [trace, keychain = m_keychain] { *trace = keychain.peek(account); },
        [trace, self = QPointer(this)] {
            if (ProviderKeyStore *store = self.data()) {
                store->noteTrace(*trace);
            }
        });
}

void ProviderKeyStore::noteTrace(const KeychainTrace &trace)
{
    // What has been asked of the keychain since counts more.
    if (m_presence != ProviderKeyPresence::unknown) {
        return;
    }
    const bool isRead = trace.status == KeychainStatus::success;
    const bool isThere = isRead || trace.status == KeychainStatus::locked;
    m_mayHaveNoAddress = isRead ? trace.address.isEmpty() : trace.status != KeychainStatus::itemNotFound;
    note(isThere ? ProviderKeyPresence::present : ProviderKeyPresence::absent,
        isRead ? serverOf(trace.address) : m_keyAddress);
    noteAnswer(isThere);
}

void ProviderKeyStore::setConfiguredAddress(const QString &address)
{
    const QString former = std::exchange(m_configuredAddress, address);
    if (former != address && m_mayHaveNoAddress && !m_defaults.object(settingkeys::formerProviderAddress)) {
        m_defaults.setObject(
            settingkeys::formerProviderAddress, former.isEmpty() ? noKeychainAddress : former);
    }
}

void ProviderKeyStore::read(std::function<void(const AddressedText &)> take)
{
    if (m_readers) {
        m_readers->push_back(std::move(take));
        return;
    }
    const auto readers = std::make_shared<Readers>(Readers {std::move(take)});
    const auto key = std::make_shared<AddressedText>();
    m_readers = readers;
    m_run(
        KeychainCall::reads,
        [key, keychain = m_keychain] { *key = keychain.readWithAddress(account).value_or(AddressedText()); },
        [key, readers, self = QPointer(this)] {
            if (ProviderKeyStore *store = self.data()) {
                store->hand(*key, readers);
            }
        });
}

void ProviderKeyStore::hand(AddressedText key, const std::shared_ptr<Readers> &readers)
{
    if (!key.text.isEmpty()) {
        key.address = serverOf(key.address);
    }
    // A key that was read before another one was saved is no news.
    if (m_readers == readers) {
        m_readers.reset();
        if (!key.text.isEmpty()) {
            note(m_presence, key.address);
        }
    }
    noteAnswer(!key.text.isEmpty());
    for (const auto &take : *readers) {
        take(key);
    }
}

AddressedText ProviderKeyStore::readNow() const
{
    AddressedText key = m_keychain.readWithAddress(account).value_or(AddressedText());
    key.address = serverOf(key.address);
    return key;
}

void ProviderKeyStore::save(const QString &key)
{
    m_readers.reset();
    ++m_saves;
    const QString address = m_configuredAddress.isEmpty() ? noKeychainAddress : m_configuredAddress;
    m_run(
        KeychainCall::changes,
        [key, address, keychain = m_keychain] {
            if (key.isEmpty()) {
                keychain.remove(account);
            } else {
                keychain.save(key, account, address);
            }
        },
        [self = QPointer(this)] {
            if (ProviderKeyStore *store = self.data()) {
                store->noteSaved();
            }
        });
    note(key.isEmpty() ? ProviderKeyPresence::absent : ProviderKeyPresence::present, address);
}

void ProviderKeyStore::noteSaved()
{
    --m_saves;
    emit saved();
}

void ProviderKeyStore::note(ProviderKeyPresence presence, const QString &address)
{
    const bool isNew = m_presence != presence || m_keyAddress != address;
    m_presence = presence;
    m_keyAddress = address;
    if (isNew) {
        emit changed();
    }
}

void ProviderKeyStore::noteAnswer(bool isKeyThere)
{
    if (std::exchange(m_isOverdue, false) && isKeyThere) {
        emit found();
    }
}

QString ProviderKeyStore::serverOf(const QString &address) const
{
    return !address.isEmpty()
        ? address
        : m_defaults.string(settingkeys::formerProviderAddress).value_or(m_configuredAddress);
}

} // namespace lumaphone
