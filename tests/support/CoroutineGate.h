#pragma once

#include <coroutine>
#include <utility>
#include <vector>

namespace lumaphone::test {

/// Holds coroutines up while it is closed: `co_await gate.passage()`. Starts open. Main thread.
class CoroutineGate
{
    struct Passage
    {
        CoroutineGate *gate;

        bool await_ready() const { return gate->m_isOpen; }
        void await_suspend(std::coroutine_handle<> waiting) const { gate->m_waiting.push_back(waiting); }
        void await_resume() const { }
    };

public:
    CoroutineGate() = default;
    CoroutineGate(const CoroutineGate &) = delete;
    CoroutineGate &operator=(const CoroutineGate &) = delete;

    Passage passage() { return {this}; }
    void close() { m_isOpen = false; }
    void open()
    {
        m_isOpen = true;
        for (const std::coroutine_handle<> waiting : std::exchange(m_waiting, {})) {
            waiting.resume();
        }
    }
    std::size_t waiting() const { return m_waiting.size(); }

private:
    bool m_isOpen = true;
    std::vector<std::coroutine_handle<>> m_waiting;
};

} // namespace lumaphone::test
