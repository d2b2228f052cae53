#include "base/MainQueue.h"

#include <QMetaObject>
#include <QThread>

namespace lumaphone {

std::shared_ptr<MainQueue> MainQueue::create()
{
    return std::shared_ptr<MainQueue>(new MainQueue);
}

MainQueue::MainQueue()
    : m_receiver(std::make_unique<QObject>())
{
}

MainQueue::~MainQueue()
{
    // The last owner may be a background thread; the receiver belongs to the main thread's event loop.
    if (!isCurrent()) {
        m_receiver.release()->deleteLater();
    }
}

void MainQueue::post(std::function<void()> closure)
{
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return;
    }
    const bool mustWake = m_closures.empty();
    m_closures.push_back(std::move(closure));
    if (mustWake) {
        QMetaObject::invokeMethod(
            m_receiver.get(),
            [weak = weak_from_this()] {
                if (const auto self = weak.lock()) {
                    self->runPosted();
                }
            },
            Qt::QueuedConnection);
    }
}

void MainQueue::close()
{
    std::deque<std::function<void()>> dropped;
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    dropped.swap(m_closures);
}

bool MainQueue::isCurrent() const
{
    return QThread::currentThread() == m_receiver->thread();
}

bool MainQueue::isClosed()
{
    const std::lock_guard lock(m_mutex);
    return m_closed;
}

void MainQueue::runPosted()
{
    std::deque<std::function<void()>> closures;
    {
        const std::lock_guard lock(m_mutex);
        closures.swap(m_closures);
    }
    for (auto &closure : closures) {
        if (isClosed()) {
            return;
        }
        closure();
    }
}

} // namespace lumaphone
