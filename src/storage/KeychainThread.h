#pragma once

#include "storage/KeychainRunner.h"

#include <chrono>
#include <memory>
#include <thread>

namespace lumaphone {

class KeychainServices;
class MainQueue;

/// Where a program calls its keychain, so that nothing else waits for it. Main thread.
class KeychainThread
{
public:
    /// `patience`: for how long the end of the program may be held up, once for what is still to be changed
    /// and once for what has been abandoned.
    KeychainThread(std::shared_ptr<KeychainServices> services, std::shared_ptr<MainQueue> mainQueue,
        std::chrono::milliseconds patience = std::chrono::seconds(1));
    /// Lets what was to be changed be changed, if the keychain answers, and abandons the rest.
    ~KeychainThread();
    KeychainThread(const KeychainThread &) = delete;
    KeychainThread &operator=(const KeychainThread &) = delete;

    /// For this object's lifetime.
    KeychainRunner runner();

private:
    struct State;

    const std::shared_ptr<State> m_state;
    const std::chrono::milliseconds m_patience;
    std::thread m_thread;
};

} // namespace lumaphone
