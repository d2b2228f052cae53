#include "capture/AnalysisEnd.h"

#include <utility>

namespace lumaphone {

void AnalysisEnd::taskEnded()
{
    {
        const std::lock_guard lock(m_mutex);
        --m_runningTasks;
    }
    noticeIfEnded();
}

void AnalysisEnd::giveUp()
{
    const std::lock_guard lock(m_mutex);
    m_gaveUp = true;
}

void AnalysisEnd::whenEnded(std::function<void()> notice)
{
    {
        const std::lock_guard lock(m_mutex);
        m_notice = std::move(notice);
    }
    noticeIfEnded();
}

void AnalysisEnd::noticeIfEnded()
{
    std::function<void()> notice;
    {
        const std::lock_guard lock(m_mutex);
        if (m_runningTasks > 0 || m_gaveUp) {
            return;
        }
        notice = std::exchange(m_notice, nullptr);
    }
    if (notice) {
        notice();
    }
}

} // namespace lumaphone
