#pragma once

#include "speech/protocol/SampleRate.h"

#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace lumaphone {

/// A stretch of speech, with a little sound around it.
struct SpeechSegment
{
    std::int64_t start = 0; ///< position in the stream
    std::vector<float> samples; ///< in [-1, 1]
    std::int64_t voiced = 0; ///< how many samples the voice detector took for speech
    bool continuesSpeech = false; ///< it begins where the one before was cut
    bool isCut = false; ///< it ended at a limit instead of in a pause

    std::int64_t end() const { return start + static_cast<std::int64_t>(samples.size()); }
};

/// Cuts a stream of sound into segments, by the decisions of a voice detector. A segment begins a little
/// before the first decision for speech and ends in a pause. One that becomes too long ends in a breath, or
/// else where its last seconds are quietest; the rest begins the next one.
class Segmenter
{
public:
    /// In samples.
    struct Limits
    {
        std::int64_t preRoll; ///< sound kept from before the speech
        std::int64_t endSilence; ///< a pause that ends a segment
        std::int64_t tail; ///< of that pause, so much belongs to the segment
        std::int64_t minimumVoiced; ///< segments with less are dropped
        std::int64_t softLength; ///< from here on a breath ends a segment
        std::int64_t breath;
        std::int64_t hardLength; ///< no segment is longer
        std::int64_t cutSearch; ///< of its end, so much is searched for the quietest place
    };
    static const Limits unhurriedLimits;
    /// While decoding is behind: segments close early, so that their texts come sooner.
    static const Limits hurriedLimits;

    /// A segment is complete.
    struct Closed
    {
        SpeechSegment segment;
    };
    /// What began as a segment was too short to be speech.
    struct Dropped
    {
        std::int64_t start;
    };
    using Outcome = std::variant<std::monostate, Closed, Dropped>;

    /// The stream's first sample has this position.
    explicit Segmenter(std::int64_t position);

    void setLimits(const Limits &limits) { m_limits = limits; }

    /// Takes the next samples, all of which are speech or none.
    Outcome accept(std::span<const float> window, bool isSpeech);
    /// Ends the segment under way; nothing follows.
    Outcome finish();

    /// The segment under way, once there is so much speech that it will not be dropped.
    const SpeechSegment *open() const;
    /// How long nobody has spoken at its end.
    std::int64_t silence() const { return m_silence; }
    /// True after an accept() that cut a segment although speech went on.
    bool hasCutSpeech() const { return m_hasCutSpeech; }
    /// The position of the next sample.
    std::int64_t position() const { return m_position; }
    /// Samples before this position are in no later segment.
    std::int64_t settledPosition() const;

private:
    /// One window of the segment under way.
    struct Window
    {
        std::int64_t end; ///< in the segment's samples
        float loudness; ///< mean square
        bool isSpeech;
    };
    /// What a segment of which the speech was cut leaves to the next one.
    struct Rest
    {
        std::vector<float> samples;
        std::vector<Window> windows;
    };

    void begin();
    void remember(std::span<const float> window);
    void append(std::span<const float> window, bool isSpeech);
    bool isTooLong() const;
    Outcome end(bool isCut);
    Outcome cut();
    Outcome outcome(SpeechSegment segment) const;
    std::size_t quietestWindow() const;
    Rest splitAfter(std::size_t window);
    void beginWith(Rest rest);

    Limits m_limits = unhurriedLimits;
    std::int64_t m_position;
    std::vector<float> m_recent; ///< the sound before a segment, at most the pre-roll
    std::optional<SpeechSegment> m_segment;
    std::vector<Window> m_windows; ///< of the segment under way
    std::int64_t m_silence = 0; ///< at the end of the segment under way
    std::optional<std::int64_t> m_cutAt; ///< the end of the last segment, if it was cut
    bool m_hasCutSpeech = false;
};

} // namespace lumaphone
