#pragma once

#include "storage/LumaphoneKeychain.h"

#include <QCoroTask>

#include <memory>
#include <stop_token>

namespace lumaphone {

class Clock;
class MainQueue;
class ProviderKeyStore;

/// Reads the key for requests, none of which waits for long for a key that it may not need. Main thread.
class ProviderKeyReader
{
public:
    /// The store outlives this value.
    ProviderKeyReader(
        ProviderKeyStore &store, std::shared_ptr<Clock> clock, std::shared_ptr<MainQueue> mainQueue);

    /// The key with the server that it is for. Two empty texts if there is none, if the keychain keeps it to
    /// itself, once `stop` is requested, or if the keychain has not answered within two seconds and has not
    /// said either that it holds a key.
    QCoro::Task<AddressedText> read(std::stop_token stop);

private:
    ProviderKeyStore &m_store;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<MainQueue> m_mainQueue;
};

} // namespace lumaphone
