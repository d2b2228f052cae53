#include "bench/speech/Playlist.h"

#include "bench/speech/Waiting.h"

#include <QStringList>

#include <algorithm>
#include <random>

namespace lumaphone::bench {

namespace {

constexpr double rateHz = 16000;
/// Enough for every final text.
constexpr double clearPause = 2;
constexpr double shortestPause = 0.2;
constexpr double longestPause = 3;
/// Kept around joined speech: 50 ms, so that no faint sound at its edges is lost.
constexpr std::size_t edge = 800;

test::SampleRange spokenPart(const test::SpokenRecording &recording)
{
    const auto spoken = test::speechBounds(recording.samples);
    if (!spoken) {
        throw BenchError(QStringLiteral("%1 is silent.").arg(recording.path));
    }
    return {spoken->begin - std::min(edge, spoken->begin),
        std::min(spoken->end + edge, recording.samples.size())};
}

} // namespace

Playlist Playlist::spaced(const test::SpokenRecordings &speech, int rounds)
{
    Playlist list;
    list.pause(clearPause);
    for (int round = 0; round < rounds; ++round) {
        for (const test::SpokenRecording &recording : speech.recordings) {
            list.add(recording, {0, recording.samples.size()});
            list.pause(clearPause);
        }
    }
    return list;
}

Playlist Playlist::shuffled(const test::SpokenRecordings &speech, double minutes, unsigned seed)
{
    std::mt19937 chance(seed);
    std::uniform_real_distribution<double> pauseLength(shortestPause, longestPause);
    std::vector<const test::SpokenRecording *> order;
    for (const test::SpokenRecording &recording : speech.recordings) {
        order.push_back(&recording);
    }
    Playlist list;
    list.pause(clearPause);
    while (list.seconds() < minutes * 60) {
        std::shuffle(order.begin(), order.end(), chance);
        for (const test::SpokenRecording *recording : order) {
            list.add(*recording, {0, recording->samples.size()});
            list.pause(pauseLength(chance));
        }
    }
    return list;
}

Playlist Playlist::joined(const test::SpokenRecordings &speech, double minutes)
{
    Playlist list;
    list.pause(clearPause);
    while (list.seconds() < clearPause + minutes * 60) {
        for (const test::SpokenRecording &recording : speech.recordings) {
            list.add(recording, spokenPart(recording));
        }
    }
    return list;
}

double Playlist::seconds() const
{
    return static_cast<double>(m_samples.size()) / rateHz;
}

double Playlist::spokenSeconds() const
{
    return static_cast<double>(m_places.back().range.end - m_places.front().range.begin) / rateHz;
}

QString Playlist::transcript(const QString &set) const
{
    QStringList texts;
    for (const Place &place : m_places) {
        if (set.isEmpty() || place.recording->set == set) {
            texts.append(place.recording->transcript);
        }
    }
    return texts.join(QLatin1Char(' '));
}

void Playlist::pause(double seconds)
{
    m_samples.resize(m_samples.size() + static_cast<std::size_t>(seconds * rateHz));
}

void Playlist::add(const test::SpokenRecording &recording, test::SampleRange part)
{
    const std::size_t begin = m_samples.size();
    const auto first = recording.samples.begin();
    m_samples.insert(m_samples.end(), first + static_cast<std::ptrdiff_t>(part.begin),
        first + static_cast<std::ptrdiff_t>(part.end));
    m_places.push_back({&recording, {begin, m_samples.size()}});
}

} // namespace lumaphone::bench
