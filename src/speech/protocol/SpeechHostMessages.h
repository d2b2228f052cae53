#pragma once

#include "speech/protocol/WireFormat.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What the program and the speech host say to each other; docs/speech-host.md tells when. Texts are UTF-8,
/// positions count samples of 16 kHz from the start of the program's stream of sound.
namespace lumaphone::host {

/// Both sides must speak the same.
constexpr std::uint32_t protocolVersion = 3;

enum class NetworkKind : std::uint8_t {
    senseVoice, ///< several languages; whole segments
    moonshine, ///< English; whole segments
    streamingCtc,
    streamingTransducer,
};

/// A recognition network on disk.
struct Network
{
    NetworkKind kind = NetworkKind::senseVoice;
    /// One file; encoder and decoder of a Moonshine network; encoder, decoder and joiner of a transducer.
    std::vector<std::string> files;
    std::string tokens;

    bool operator==(const Network &) const = default;
};

// From the program to the host.

/// The first message, once.
struct Configure
{
    std::uint32_t version = protocolVersion;
    std::string runtimeFolder;
    std::string voiceDetector;
    /// How sure the detector must be of speech, in thousandths.
    std::uint32_t voiceThreshold = 500;
    /// Decodes closed segments, and open ones if nothing else does.
    Network network;
    /// A streaming network that serves the volatile texts of open segments.
    std::optional<Network> volatileNetwork;
    /// "ja", "en", "ko" or "zh"; empty: the network finds out.
    std::string language;
    std::uint32_t threads = 1;

    bool operator==(const Configure &) const = default;
};

/// The next samples. The first may start at any position, every other continues the one before it.
struct Sound
{
    std::int64_t position = 0;
    std::vector<std::int16_t> samples;

    bool operator==(const Sound &) const = default;
};

/// No more sound follows.
struct EndOfSound
{
    bool operator==(const EndOfSound &) const = default;
};

using Request = std::variant<Configure, Sound, EndOfSound>;

// From the host to the program.

enum class LoadStage : std::uint8_t { runtime, voiceDetector, network, volatileNetwork };

/// What is being loaded now.
struct Loading
{
    LoadStage stage = LoadStage::runtime;

    bool operator==(const Loading &) const = default;
};

struct Ready
{
    std::string runtimeVersion;

    bool operator==(const Ready &) const = default;
};

/// The text of a segment: a volatile one of an open segment, or the final one of a closed segment.
struct Decoded
{
    std::int64_t start = 0; ///< position; names the segment
    std::int64_t end = 0;
    std::int64_t voicedSamples = 0;
    bool isFinal = false;
    bool continuesSpeech = false; ///< it begins where the segment before was cut, within speech
    bool isCut = false; ///< it was cut itself; its speech goes on in the next segment
    std::uint32_t milliseconds = 0; ///< how long decoding took
    std::string language; ///< as the network names it: "ja", "nospeech"; empty if it names none
    std::string event; ///< "Speech", "BGM"; empty if it names none
    std::string text;

    bool operator==(const Decoded &) const = default;
};

/// Nothing before this position is needed any more, whatever happens.
struct Settled
{
    std::int64_t position = 0;

    bool operator==(const Settled &) const = default;
};

/// A segment has closed and waits for its final text. `end` says where one that ends the host ends.
struct Closed
{
    std::int64_t start = 0;
    std::int64_t end = 0;

    bool operator==(const Closed &) const = default;
};

/// After EndOfSound: every final text has been sent.
struct Finished
{
    bool operator==(const Finished &) const = default;
};

enum class FailureKind : std::uint8_t {
    protocol, ///< the program said something the host does not understand
    runtimeMissing, ///< the library is not there, or cannot be loaded
    runtimeVersion, ///< the library is too old; detail: its version
    voiceDetector, ///< the file is missing or damaged
    network, ///< a file is missing or damaged
    permission, ///< a file must not be read; detail: which
    decoding, ///< a decode failed
};

/// The host ends after it.
struct Failure
{
    FailureKind kind = FailureKind::protocol;
    std::string detail;

    bool operator==(const Failure &) const = default;
};

using Report = std::variant<Loading, Ready, Decoded, Settled, Closed, Finished, Failure>;

/// The content of a frame.
Bytes encode(const Request &request);
Bytes encode(const Report &report);
/// Throw WireError for anything that encode() does not write.
Request decodeRequest(const Bytes &content);
Report decodeReport(const Bytes &content);

} // namespace lumaphone::host
