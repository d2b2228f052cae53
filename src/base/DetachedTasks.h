#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace lumaphone {

/// Slow work that nobody waits for, each piece on a thread of its own, until the end of the program: the
/// destructor waits for what still runs. Any thread.
class DetachedTasks
{
public:
    DetachedTasks() = default;
    /// Must not be called by one of the tasks.
    ~DetachedTasks();
    DetachedTasks(const DetachedTasks &) = delete;
    DetachedTasks &operator=(const DetachedTasks &) = delete;

    /// `work` must not throw and must not own this object.
    void run(const std::string &threadName, std::function<void()> work);
    /// Returns when everything run so far has ended.
    void wait();

private:
    struct Task
    {
        std::shared_ptr<std::atomic<bool>> ended;
        std::thread thread;
    };

    std::mutex m_mutex;
    std::vector<Task> m_tasks;
};

} // namespace lumaphone
