#pragma once

#include "support/speech-scores/SpeechBounds.h"
#include "support/speech-scores/SpokenRecordings.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace lumaphone::bench {

/// Recordings one after the other, as one sound of 16 kHz.
class Playlist
{
public:
    struct Place
    {
        const test::SpokenRecording *recording;
        test::SampleRange range;
    };

    /// All of them, `rounds` times, with the same pause around each.
    static Playlist spaced(const test::SpokenRecordings &speech, int rounds);
    /// In an order by chance, each as often as the others, for `minutes`, with pauses of 0.2 to 3 s.
    static Playlist shuffled(const test::SpokenRecordings &speech, double minutes, unsigned seed);
    /// All of them without pauses, the silence around each cut off; again and again for `minutes`.
    static Playlist joined(const test::SpokenRecordings &speech, double minutes);

    const std::vector<std::int16_t> &samples() const { return m_samples; }
    const std::vector<Place> &places() const { return m_places; }
    double seconds() const;
    /// From the beginning of the first recording to the end of the last one.
    double spokenSeconds() const;
    /// What is said in the recordings of a set, or in all.
    QString transcript(const QString &set = {}) const;

private:
    void pause(double seconds);
    void add(const test::SpokenRecording &recording, test::SampleRange part);

    std::vector<std::int16_t> m_samples;
    std::vector<Place> m_places;
};

} // namespace lumaphone::bench
