#include "speech/host/SourcePace.h"

#include "speech/host/Segmenter.h"

namespace lumaphone {

namespace {

using namespace std::chrono_literals;

// A device's clock differs a little from ours, which must not add up.
constexpr auto observation = 30s;
// A sound server may deliver this much at once.
constexpr auto burst = 1s;

std::chrono::duration<double> lengthOf(std::int64_t samples)
{
    return std::chrono::duration<double>(static_cast<double>(samples) / samplesPerSecond);
}

} // namespace

void SourcePace::arrived(std::int64_t samples, Time now)
{
    if (!m_since || (now - *m_since > observation && !isAheadOfTime(now))) {
        m_since = now;
        m_samples = 0;
    }
    m_samples += samples;
}

bool SourcePace::isAheadOfTime(Time now) const
{
    return m_since && lengthOf(m_samples) > now - *m_since + burst;
}

} // namespace lumaphone
