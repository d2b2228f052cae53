#include "base/DetachedTasks.h"

#include "base/SerialQueue.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

DetachedTasks::~DetachedTasks()
{
    wait();
}

void DetachedTasks::run(const std::string &threadName, std::function<void()> work)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_tasks, [](Task &task) {
        if (!*task.ended) {
            return false;
        }
        task.thread.join();
        return true;
    });
    auto ended = std::make_shared<std::atomic<bool>>(false);
    std::thread thread([threadName, ended, work = std::move(work)]() mutable {
        nameCurrentThread(threadName);
        work();
        work = nullptr;
        *ended = true;
    });
    m_tasks.push_back({std::move(ended), std::move(thread)});
}

void DetachedTasks::wait()
{
    std::vector<Task> tasks;
    {
        const std::lock_guard lock(m_mutex);
        tasks.swap(m_tasks);
    }
    for (Task &task : tasks) {
        task.thread.join();
    }
}

} // namespace lumaphone
