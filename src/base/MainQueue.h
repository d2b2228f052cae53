#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace lumaphone {

/// The one way from a background thread to the main thread: closures posted from anywhere run in order on
/// the thread that created the queue, inside its event loop. Closures posted after close() are dropped.
class MainQueue
{
public:
    static std::shared_ptr<MainQueue> create();
    ~MainQueue();
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;

    void post(std::function<void()> closure);
    /// Main thread: drops what has not run yet and everything that is posted later.
    void close();
    /// Whether the caller runs on the queue's thread.
    bool isCurrent() const;

private:
    MainQueue();
    bool isClosed();
    void runPosted();

    std::mutex m_mutex;
    std::deque<std::function<void()>> m_closures;
    bool m_closed = false;
    std::unique_ptr<QObject> m_receiver;
};

} // namespace lumaphone
