#include "base/MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

namespace lumaphone {

/// Woken by an event without contents: whatever crosses between the threads lies under the queue's lock.
class MainQueue::Receiver final : public QObject
{
public:
    void serve(std::weak_ptr<MainQueue> queue) { m_queue = std::move(queue); }

    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        if (const auto queue = m_queue.lock()) {
            queue->runPosted();
        }
        return true;
    }

private:
    std::weak_ptr<MainQueue> m_queue;
};

std::shared_ptr<MainQueue> MainQueue::create()
{
    const std::shared_ptr<MainQueue> queue(new MainQueue);
    queue->m_receiver->serve(queue);
    return queue;
}

MainQueue::MainQueue()
    : m_receiver(std::make_unique<Receiver>())
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
        QCoreApplication::postEvent(m_receiver.get(), new QEvent(QEvent::User));
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

void MainQueue::runPosted()
{
    std::deque<std::function<void()>> closures;
    {
        const std::lock_guard lock(m_mutex);
        closures.swap(m_closures);
    }
    for (auto &closure : closures) {
        closure();
    }
}

} // namespace lumaphone
