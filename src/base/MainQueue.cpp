#include "base/MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <utility>

namespace lumaphone {

namespace {

/// Takes wake-ups from other threads. They carry nothing: what is to be run is handed over under the queue's
/// own lock, which a thread sanitizer can see.
class WakeReceiver final : public QObject
{
public:
    explicit WakeReceiver(std::function<void()> wake)
        : m_wake(std::move(wake))
    {
    }

protected:
    void customEvent(QEvent *) override { m_wake(); }

private:
    std::function<void()> m_wake;
};

} // namespace

std::shared_ptr<MainQueue> MainQueue::create()
{
    std::shared_ptr<MainQueue> queue(new MainQueue);
    queue->m_receiver = std::make_unique<WakeReceiver>([weak = std::weak_ptr(queue)] {
        if (const auto self = weak.lock()) {
            self->runPosted();
        }
    });
    return queue;
}

MainQueue::MainQueue() = default;

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
