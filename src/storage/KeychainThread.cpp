#include "storage/KeychainThread.h"

#include "base/MainQueue.h"
#include "base/SerialQueue.h"
#include "platform/KeychainServices.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace lumaphone {

/// Shared with the thread, which may outlive its owner by a call that does not return.
struct KeychainThread::State
{
    struct Item
    {
        KeychainCall call;
        std::function<void()> work;
        std::function<void()> done;
    };

    const std::shared_ptr<KeychainServices> services;
    std::shared_ptr<MainQueue> mainQueue; ///< none once the owner has left the thread behind
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Item> items; ///< the first one is under way
    bool isEnding = false;
    bool hasEnded = false;

    State(std::shared_ptr<KeychainServices> keychain, std::shared_ptr<MainQueue> queue)
        : services(std::move(keychain))
        , mainQueue(std::move(queue))
    {
    }

    void post(Item item)
    {
        const std::lock_guard lock(mutex);
        items.push_back(std::move(item));
        changed.notify_all();
    }

    void run()
    {
        nameCurrentThread("keychain");
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return isEnding || !items.empty(); });
            if (isEnding) {
                break;
            }
            const std::function<void()> work = items.front().work;
            lock.unlock();
            work();
            lock.lock();
            if (!mainQueue) {
                break;
            }
            mainQueue->post(std::move(items.front().done));
            items.pop_front();
            changed.notify_all();
        }
        hasEnded = true;
        changed.notify_all();
    }

    bool isChanging() const
    {
        return std::any_of(
            items.begin(), items.end(), [](const Item &item) { return item.call == KeychainCall::changes; });
    }
};

KeychainThread::KeychainThread(std::shared_ptr<KeychainServices> services,
    std::shared_ptr<MainQueue> mainQueue, std::chrono::milliseconds patience)
    : m_state(std::make_shared<State>(std::move(services), std::move(mainQueue)))
    , m_patience(patience)
    , m_thread([state = m_state] { state->run(); })
{
}

KeychainThread::~KeychainThread()
{
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait_for(lock, m_patience, [this] { return !m_state->isChanging(); });
    m_state->isEnding = true;
    m_state->changed.notify_all();
    lock.unlock();
    m_state->services->abandon();
    lock.lock();
    const bool hasEnded = m_state->changed.wait_for(lock, m_patience, [this] { return m_state->hasEnded; });
    // What belongs to the main thread ends in it.
    const std::shared_ptr<MainQueue> mainQueue = std::move(m_state->mainQueue);
    const std::deque<State::Item> unanswered = std::move(m_state->items);
    lock.unlock();
    if (hasEnded) {
        m_thread.join();
    } else {
        m_thread.detach(); // it owns what it uses
    }
}

KeychainRunner KeychainThread::runner()
{
    return [state = m_state](KeychainCall call, std::function<void()> work, std::function<void()> done) {
        state->post({call, std::move(work), std::move(done)});
    };
}

} // namespace lumaphone
