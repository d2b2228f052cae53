#pragma once

#include <QtGlobal>

#include <chrono>
#include <deque>
#include <optional>

namespace lumaphone {

/// How fast a download has come in its last seconds, and how long the rest will take.
class DownloadPace
{
public:
    /// What has come so far, as often as that is known. Less than before means another download.
    void note(std::chrono::nanoseconds now, qint64 bytes);
    void forget() { m_samples.clear(); }

    /// None in the first second, and while nothing comes.
    std::optional<double> bytesPerSecond() const;
    /// None as long as there is no pace.
    std::optional<std::chrono::seconds> timeFor(qint64 bytes) const;

private:
    struct Sample
    {
        std::chrono::nanoseconds time;
        qint64 bytes;
    };

    std::deque<Sample> m_samples;
};

} // namespace lumaphone
