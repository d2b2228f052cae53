#pragma once

#include "storage/KeychainRunner.h"
#include "support/Coroutines.h"

#include <deque>

namespace lumaphone::test {

/// Keeps what is asked of a keychain until the test lets it be answered. Main thread.
class HeldKeychainCalls
{
public:
    /// For this object's lifetime.
    KeychainRunner runner()
    {
        return [this](KeychainCall, std::function<void()> work, std::function<void()> done) {
            m_calls.push_back([work = std::move(work), done = std::move(done)] {
                work();
                done();
            });
        };
    }

    std::size_t count() const { return m_calls.size(); }
    void answerNext()
    {
        const auto call = std::move(m_calls.front());
        m_calls.pop_front();
        call();
        settle();
    }
    void answerAll()
    {
        while (!m_calls.empty()) {
            answerNext();
        }
    }

private:
    std::deque<std::function<void()>> m_calls;
};

} // namespace lumaphone::test
