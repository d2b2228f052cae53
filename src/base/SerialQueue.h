#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace lumaphone {

/// A named thread that runs posted closures one after another, in the order of posting.
/// post(), drain() and isCurrent() may be called from any thread.
class SerialQueue
{
public:
    /// `label` is in reverse-domain form; the thread carries its last component.
    explicit SerialQueue(std::string label);
    /// Runs what was posted so far, then ends the thread. Must not be called on the queue itself.
    ~SerialQueue();
    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    const std::string &label() const { return m_label; }
    void post(std::function<void()> closure);
    /// Returns when everything posted before has run. A programming error on the queue itself.
    void drain();
    bool isCurrent() const;

private:
    void run();

    const std::string m_label;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_closures;
    bool m_ending = false;
    std::thread m_thread;
};

/// Gives the calling thread a name that debuggers and `top -H` show (at most 15 bytes are kept).
void nameCurrentThread(const std::string &name);

} // namespace lumaphone
