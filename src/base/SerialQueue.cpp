#include "base/SerialQueue.h"

#include <QtGlobal>

#include <pthread.h>

#include <future>

namespace lumaphone {

void nameCurrentThread(const std::string &name)
{
    pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
}

SerialQueue::SerialQueue(std::string label)
    : m_label(std::move(label))
    , m_thread([this] { run(); })
{
}

SerialQueue::~SerialQueue()
{
    Q_ASSERT(!isCurrent());
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void SerialQueue::post(std::function<void()> closure)
{
    {
        const std::lock_guard lock(m_mutex);
        m_closures.push_back(std::move(closure));
    }
    m_wake.notify_one();
}

void SerialQueue::drain()
{
    Q_ASSERT(!isCurrent());
    std::promise<void> reached;
    post([&reached] { reached.set_value(); });
    reached.get_future().wait();
}

bool SerialQueue::isCurrent() const
{
    return std::this_thread::get_id() == m_thread.get_id();
}

void SerialQueue::run()
{
    nameCurrentThread(m_label.substr(m_label.rfind('.') + 1));
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_ending || !m_closures.empty(); });
        if (m_closures.empty()) {
            return;
        }
        std::function<void()> closure = std::move(m_closures.front());
        m_closures.pop_front();
        lock.unlock();
        closure();
        closure = nullptr;
        lock.lock();
    }
}

} // namespace lumaphone
