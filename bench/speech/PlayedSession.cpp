#include "bench/speech/PlayedSession.h"

#include "bench/speech/Waiting.h"

#include <algorithm>
#include <cstdlib>

namespace lumaphone::bench {

namespace {

using namespace std::chrono_literals;

/// A sample of speech, and none of what lies before it.
constexpr int loud = 1000;
/// By how much a recording may lie elsewhere than its place says.
constexpr std::size_t tolerance = 1600; ///< 100 ms
/// By how much its speech may seem longer or shorter than it is.
constexpr std::size_t roughness = 480; ///< 30 ms
/// Without a change for so long nothing changes any more.
constexpr auto calm = 2s;

std::optional<std::size_t> firstLoudSample(std::span<const std::int16_t> samples)
{
    const auto found = std::find_if(
        samples.begin(), samples.end(), [](std::int16_t sample) { return std::abs(int(sample)) >= loud; });
    return found == samples.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - samples.begin()));
}

std::size_t distance(std::size_t a, std::size_t b)
{
    return a > b ? a - b : b - a;
}

/// Speech within a part of a longer recording, by the longer one's positions.
std::optional<test::SampleRange> boundsWithin(std::span<const std::int16_t> samples, test::SampleRange part)
{
    const std::size_t end = std::min(part.end, samples.size());
    if (part.begin >= end) {
        return std::nullopt;
    }
    const auto bounds = test::speechBounds(samples.subspan(part.begin, end - part.begin));
    return bounds ? std::optional(test::SampleRange {part.begin + bounds->begin, part.begin + bounds->end})
                  : std::nullopt;
}

} // namespace

PlayedSession::PlayedSession(
    const SoundServer &server, const ProgramUnderTest &program, AppleSystemSpeechLanguage language)
    : m_server(server)
    , m_captions(program, QStringLiteral("system"), language)
    , m_secondsUntilListening(m_captions.waitUntilListening())
    , m_recording(SoundServer::output)
{
}

void PlayedSession::play(const Playlist &playlist)
{
    m_limit = std::chrono::milliseconds(static_cast<int>(playlist.seconds() * 1000)) + 30s;
    m_playback.emplace(m_server.play(playlist));
    const bool isHeard
        = waitUntil([this] { return firstLoudSample(m_recording.samples()).has_value(); }, 30s);
    if (!isHeard) {
        throw BenchError(QStringLiteral("Nothing is heard of what is played."));
    }
}

void PlayedSession::waitUntilSettled()
{
    const bool isPlayed = waitUntil(
        [this] {
            m_captions.throwIfFailed();
            return m_playback->isFinished();
        },
        m_limit);
    if (!isPlayed) {
        throw BenchError(QStringLiteral("The sound server does not play to the end."));
    }
    const auto played = std::chrono::steady_clock::now();
    waitUntil(
        [&] {
            m_captions.throwIfFailed();
            return std::chrono::steady_clock::now() - std::max(played, lastChange().value_or(played)) > calm;
        },
        20s);
}

std::optional<test::TraceTime> PlayedSession::lastChange() const
{
    std::optional<test::TraceTime> last;
    for (const test::CaptionHistory &line : trace().lines()) {
        last = std::max(line.changes.back().at, last.value_or(line.changes.back().at));
    }
    return last;
}

std::vector<HeardStretch> PlayedSession::stretches(const Playlist &playlist) const
{
    const std::vector<std::int16_t> heard = m_recording.samples();
    const auto firstPlayed = firstLoudSample(playlist.samples());
    const auto firstHeard = firstLoudSample(heard);
    if (!firstPlayed || !firstHeard || *firstHeard < *firstPlayed) {
        throw BenchError(QStringLiteral("What was played has not been heard."));
    }
    const std::size_t shift = *firstHeard - *firstPlayed;
    std::vector<HeardStretch> stretches;
    for (const Playlist::Place &place : playlist.places()) {
        const test::SampleRange expected {place.range.begin + shift, place.range.end + shift};
        const auto bounds = boundsWithin(heard, {expected.begin - tolerance, expected.end + tolerance});
        const auto original = test::speechBounds(place.recording->samples);
        const bool isWhole = bounds && original && distance(bounds->size(), original->size()) <= roughness;
        const test::SampleRange range = bounds.value_or(expected);
        stretches.push_back({{m_recording.timeOf(range.begin), m_recording.timeOf(range.end)}, isWhole});
    }
    return stretches;
}

} // namespace lumaphone::bench
