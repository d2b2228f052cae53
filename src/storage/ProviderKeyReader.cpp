#include "storage/ProviderKeyReader.h"

#include "base/Completion.h"
#include "platform/Clock.h"
#include "storage/ProviderKeyStore.h"

#include <QPointer>

namespace lumaphone {

namespace {

constexpr std::chrono::seconds longestWait {2};

void giveUp(ProviderKeyStore *store, const Completion<AddressedText> &key)
{
    // A key that is there is waited for: the user may just be asked for it.
    if (store && store->presence() != ProviderKeyPresence::present && !key.await_ready()) {
        store->noteOverdue();
        key.resolve();
    }
}

QCoro::Task<> giveUpInTime(
    QPointer<ProviderKeyStore> store, std::shared_ptr<Clock> clock, Completion<AddressedText> key)
{
    co_await clock->sleepFor(longestWait);
    giveUp(store.data(), key);
}

} // namespace

ProviderKeyReader::ProviderKeyReader(
    ProviderKeyStore &store, std::shared_ptr<Clock> clock, std::shared_ptr<MainQueue> mainQueue)
    : m_store(store)
    , m_clock(std::move(clock))
    , m_mainQueue(std::move(mainQueue))
{
}

QCoro::Task<AddressedText> ProviderKeyReader::read(std::stop_token stop)
{
    const bool isThere = m_store.presence() == ProviderKeyPresence::present;
    if (!isThere && m_store.isOverdue()) {
        co_return {};
    }
    const Completion<AddressedText> key(m_mainQueue);
    m_store.read([key](const AddressedText &read) { key.resolve(read); });
    if (!isThere && !key.await_ready()) {
        giveUpInTime(&m_store, m_clock, key);
    }
    const std::stop_callback onStop(stop, [key] { key.resolve(); });
    co_return co_await key;
}

} // namespace lumaphone
