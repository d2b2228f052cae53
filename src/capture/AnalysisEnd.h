#pragma once

#include <functional>
#include <mutex>

namespace lumaphone {

/// Notices when the analysis and all result tasks of one run have ended without a failure. Any thread.
class AnalysisEnd
{
public:
    explicit AnalysisEnd(int tasks)
        : m_runningTasks(tasks)
    {
    }

    void taskEnded();
    /// From now on there is no good end to report.
    void giveUp();
    /// Calls `notice` once, on the thread of the last task to end, or at once if they have all ended.
    void whenEnded(std::function<void()> notice);

private:
    void noticeIfEnded();

    std::mutex m_mutex;
    int m_runningTasks;
    bool m_gaveUp = false;
    std::function<void()> m_notice;
};

} // namespace lumaphone
