#include "speech/Segmenter.h"

#include <algorithm>

namespace lumaphone {

namespace {

constexpr std::int64_t milliseconds(std::int64_t count)
{
    return count * samplesPerSecond / 1000;
}

} // namespace

const Segmenter::Limits Segmenter::unhurriedLimits {
    .preRoll = milliseconds(300),
    .endSilence = milliseconds(400),
    .tail = milliseconds(250),
    .minimumVoiced = milliseconds(250),
    .softLength = milliseconds(8000),
    .breath = milliseconds(120),
    .hardLength = milliseconds(10000),
};

const Segmenter::Limits Segmenter::hurriedLimits {
    .preRoll = milliseconds(300),
    .endSilence = milliseconds(250),
    .tail = milliseconds(150),
    .minimumVoiced = milliseconds(250),
    .softLength = milliseconds(3000),
    .breath = milliseconds(60),
    .hardLength = milliseconds(5000),
};

Segmenter::Segmenter(std::int64_t position)
    : m_position(position)
    , m_closedUntil(position)
{
}

Segmenter::Outcome Segmenter::accept(std::span<const float> window, bool isSpeech)
{
    m_hasCutSpeech = false;
    if (!m_segment && isSpeech) {
        begin();
    }
    if (!m_segment) {
        m_continues = false;
        remember(window);
        m_position += static_cast<std::int64_t>(window.size());
        return {};
    }
    m_segment->samples.insert(m_segment->samples.end(), window.begin(), window.end());
    const auto length = static_cast<std::int64_t>(window.size());
    m_position += length;
    if (isSpeech) {
        m_segment->voiced += length;
        m_silence = 0;
    } else {
        m_silence += length;
    }
    return isComplete() ? end() : Outcome();
}

Segmenter::Outcome Segmenter::finish()
{
    return m_segment ? end() : Outcome();
}

void Segmenter::begin()
{
    m_segment.emplace();
    m_segment->start = m_position - static_cast<std::int64_t>(m_recent.size());
    m_segment->samples = std::move(m_recent);
    m_recent.clear();
    m_silence = 0;
}

void Segmenter::remember(std::span<const float> window)
{
    m_recent.insert(m_recent.end(), window.begin(), window.end());
    const auto tooMany = static_cast<std::int64_t>(m_recent.size()) - m_limits.preRoll;
    if (tooMany > 0) {
        m_recent.erase(m_recent.begin(), m_recent.begin() + tooMany);
    }
}

bool Segmenter::isComplete() const
{
    const auto length = static_cast<std::int64_t>(m_segment->samples.size());
    return m_silence >= m_limits.endSilence || length >= m_limits.hardLength
        || (length >= m_limits.softLength && m_silence >= m_limits.breath);
}

Segmenter::Outcome Segmenter::end()
{
    SpeechSegment segment = std::move(*m_segment);
    m_segment.reset();
    m_hasCutSpeech = m_silence == 0;
    const std::int64_t surplus = std::max<std::int64_t>(0, m_silence - m_limits.tail);
    const auto kept = segment.samples.end() - surplus;
    // What is left of the pause may be the pre-roll of the next segment.
    m_recent.assign(kept, segment.samples.end());
    segment.samples.erase(kept, segment.samples.end());
    m_closedUntil = segment.end();
    // The last syllable of speech that was cut is speech, however short.
    const bool isSpeech = segment.voiced > 0 && (m_continues || segment.voiced >= m_limits.minimumVoiced);
    m_continues = m_hasCutSpeech;
    if (!isSpeech) {
        return Dropped {segment.start};
    }
    return Closed {std::move(segment)};
}

const SpeechSegment *Segmenter::open() const
{
    return m_segment && m_segment->voiced >= m_limits.minimumVoiced ? &*m_segment : nullptr;
}

std::int64_t Segmenter::settledPosition() const
{
    return m_segment ? m_segment->start : m_position - static_cast<std::int64_t>(m_recent.size());
}

} // namespace lumaphone
