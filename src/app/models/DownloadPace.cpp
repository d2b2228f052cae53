#include "app/models/DownloadPace.h"

#include <cmath>

namespace lumaphone {

namespace {

constexpr std::chrono::seconds window {10};
constexpr std::chrono::seconds shortestTime {1};

} // namespace

void DownloadPace::note(std::chrono::nanoseconds now, qint64 bytes)
{
    if (!m_samples.empty() && bytes < m_samples.back().bytes) {
        m_samples.clear();
    }
    m_samples.push_back({now, bytes});
    // The oldest one that is kept lies just outside the window.
    while (m_samples.size() > 2 && m_samples[1].time <= now - window) {
        m_samples.pop_front();
    }
}

std::optional<double> DownloadPace::bytesPerSecond() const
{
    if (m_samples.empty()) {
        return std::nullopt;
    }
    const std::chrono::duration<double> time = m_samples.back().time - m_samples.front().time;
    const qint64 bytes = m_samples.back().bytes - m_samples.front().bytes;
    if (time < shortestTime || bytes <= 0) {
        return std::nullopt;
    }
    return static_cast<double>(bytes) / time.count();
}

std::optional<std::chrono::seconds> DownloadPace::timeFor(qint64 bytes) const
{
    const auto pace = bytesPerSecond();
    if (!pace) {
        return std::nullopt;
    }
    return std::chrono::seconds(std::llround(std::ceil(static_cast<double>(bytes) / *pace)));
}

} // namespace lumaphone
