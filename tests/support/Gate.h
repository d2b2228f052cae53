#pragma once

#include <condition_variable>
#include <mutex>

namespace lumaphone::test {

/// Threads wait at it until it is opened. It stays open.
class Gate
{
public:
    void open()
    {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_opened.notify_all();
    }
    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_opened.wait(lock, [this] { return m_isOpen; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_isOpen = false;
};

} // namespace lumaphone::test
