#include "speech/host/Segmenter.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace lumaphone {

namespace {

constexpr std::int64_t milliseconds(std::int64_t count)
{
    return count * samplesPerSecond / 1000;
}

// An earlier place is better for a cut if it has less than this of the power of a later one.
constexpr float worthwhile = 0.5F;

} // namespace

const Segmenter::Limits Segmenter::unhurriedLimits {
    .preRoll = milliseconds(300),
    .endSilence = milliseconds(400),
    .tail = milliseconds(250),
    .minimumVoiced = milliseconds(250),
    .softLength = milliseconds(8000),
    .breath = milliseconds(120),
    .hardLength = milliseconds(10000),
    .cutSearch = milliseconds(4000),
};

const Segmenter::Limits Segmenter::hurriedLimits {
    .preRoll = milliseconds(300),
    .endSilence = milliseconds(250),
    .tail = milliseconds(150),
    .minimumVoiced = milliseconds(250),
    .softLength = milliseconds(3000),
    .breath = milliseconds(60),
    .hardLength = milliseconds(5000),
    .cutSearch = milliseconds(2000),
};

Segmenter::Segmenter(std::int64_t position)
    : m_position(position)
{
}

Segmenter::Outcome Segmenter::accept(std::span<const float> window, bool isSpeech)
{
    m_hasCutSpeech = false;
    if (!m_segment && isSpeech) {
        begin();
    }
    m_position += static_cast<std::int64_t>(window.size());
    if (!m_segment) {
        remember(window);
        return {};
    }
    append(window, isSpeech);
    if (m_silence >= m_limits.endSilence) {
        return end(false);
    }
    return isTooLong() ? cut() : Outcome();
}

Segmenter::Outcome Segmenter::finish()
{
    return m_segment ? end(false) : Outcome();
}

void Segmenter::begin()
{
    m_segment.emplace();
    m_segment->samples = std::exchange(m_recent, {});
    m_segment->start = m_position - static_cast<std::int64_t>(m_segment->samples.size());
    // A short breath does not end a sentence.
    m_segment->continuesSpeech = m_cutAt && m_segment->start - *m_cutAt < m_limits.endSilence;
    m_windows.clear();
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

void Segmenter::append(std::span<const float> window, bool isSpeech)
{
    m_segment->samples.insert(m_segment->samples.end(), window.begin(), window.end());
    const auto length = static_cast<std::int64_t>(window.size());
    const float energy = std::inner_product(window.begin(), window.end(), window.begin(), 0.F);
    m_windows.push_back({static_cast<std::int64_t>(m_segment->samples.size()),
        energy / static_cast<float>(std::max<std::int64_t>(1, length)), isSpeech});
    if (isSpeech) {
        m_segment->voiced += length;
        m_silence = 0;
    } else {
        m_silence += length;
    }
}

bool Segmenter::isTooLong() const
{
    const auto length = static_cast<std::int64_t>(m_segment->samples.size());
    return length >= m_limits.hardLength || (length >= m_limits.softLength && m_silence >= m_limits.breath);
}

Segmenter::Outcome Segmenter::end(bool isCut)
{
    SpeechSegment segment = std::move(*m_segment);
    m_segment.reset();
    segment.isCut = isCut;
    const std::int64_t surplus = std::max<std::int64_t>(0, m_silence - m_limits.tail);
    const auto kept = segment.samples.end() - surplus;
    // What is left of the pause may be the pre-roll of the next segment.
    m_recent.assign(kept, segment.samples.end());
    segment.samples.erase(kept, segment.samples.end());
    m_cutAt = isCut ? std::optional(segment.end()) : std::nullopt;
    return outcome(std::move(segment));
}

/// Ends a segment that is too long: in the breath at its end if there is one.
Segmenter::Outcome Segmenter::cut()
{
    m_hasCutSpeech = m_silence < m_limits.breath;
    if (!m_hasCutSpeech) {
        return end(true);
    }
    Rest rest = splitAfter(quietestWindow());
    const std::int64_t silence = std::exchange(m_silence, 0);
    Outcome first = end(true);
    m_silence = silence;
    beginWith(std::move(rest));
    return first;
}

/// The end of a segment that was cut is speech, however short.
Segmenter::Outcome Segmenter::outcome(SpeechSegment segment) const
{
    const bool isSpeech
        = segment.voiced > 0 && (segment.continuesSpeech || segment.voiced >= m_limits.minimumVoiced);
    if (!isSpeech) {
        return Dropped {segment.start};
    }
    return Closed {std::move(segment)};
}

/// Among the last windows, the latest of the quietest; its neighbours count too, since words have gaps
/// shorter than a breath.
std::size_t Segmenter::quietestWindow() const
{
    const auto length = static_cast<std::int64_t>(m_segment->samples.size());
    const auto loudnessAround = [this](std::size_t i) {
        return m_windows[i - 1].loudness + m_windows[i].loudness + m_windows[i + 1].loudness;
    };
    std::size_t quietest = m_windows.size() - 1;
    float least = std::numeric_limits<float>::infinity();
    for (std::size_t i = m_windows.size() - 1; i-- > 1 && m_windows[i].end > length - m_limits.cutSearch;) {
        // Much quieter, to be worth a shorter segment.
        if (loudnessAround(i) < least * worthwhile) {
            least = loudnessAround(i);
            quietest = i;
        }
    }
    return quietest;
}

Segmenter::Rest Segmenter::splitAfter(std::size_t window)
{
    const std::int64_t at = m_windows[window].end;
    std::vector<float> &samples = m_segment->samples;
    Rest rest {{samples.begin() + at, samples.end()}, {}};
    for (auto it = m_windows.begin() + static_cast<std::ptrdiff_t>(window) + 1; it != m_windows.end(); ++it) {
        const std::int64_t length = it->end - (it - 1)->end;
        m_segment->voiced -= it->isSpeech ? length : 0;
        rest.windows.push_back({it->end - at, it->loudness, it->isSpeech});
    }
    samples.erase(samples.begin() + at, samples.end());
    return rest;
}

void Segmenter::beginWith(Rest rest)
{
    m_recent.clear();
    if (rest.samples.empty()) {
        return;
    }
    m_segment.emplace();
    m_segment->start = m_position - static_cast<std::int64_t>(rest.samples.size());
    m_segment->samples = std::move(rest.samples);
    m_segment->continuesSpeech = true;
    m_windows = std::move(rest.windows);
    std::int64_t before = 0;
    for (const Window &window : m_windows) {
        m_segment->voiced += window.isSpeech ? window.end - before : 0;
        before = window.end;
    }
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
