#include "speech/host/StreamingNetwork.h"

#include "speech/host/ConfigurationBlock.h"
#include "speech/host/HostFailure.h"
#include "speech/host/Segmenter.h"

#include <vector>

namespace lumaphone::host {

namespace {

// Offsets in the library's OnlineRecognizerConfig.
struct OnlineLayout
{
    enum : std::size_t {
        sampleRate = 0,
        featureDimension = 4,
        encoder = 8 + 0,
        decoder = 8 + 8,
        joiner = 8 + 16,
        tokens = 8 + 48,
        threadCount = 8 + 56,
        provider = 8 + 64,
        nemoCtc = 8 + 120,
        decodingMethod = 144,
    };
};

constexpr std::size_t onlineResultText = 0;

// Networks look a little ahead: the end of a segment is followed by so much silence.
constexpr std::size_t lookAhead = samplesPerSecond;

ConfigurationBlock configurationOf(const Network &network, int threads)
{
    const bool isTransducer = network.kind == NetworkKind::streamingTransducer;
    if (network.files.size() != (isTransducer ? 3 : 1)) {
        throw HostFailure(FailureKind::network, "a streaming network has one file, a transducer three");
    }
    ConfigurationBlock block;
    block.setInteger(OnlineLayout::sampleRate, static_cast<std::int32_t>(samplesPerSecond));
    block.setInteger(OnlineLayout::featureDimension, 80);
    if (isTransducer) {
        block.setText(OnlineLayout::encoder, network.files[0]);
        block.setText(OnlineLayout::decoder, network.files[1]);
        block.setText(OnlineLayout::joiner, network.files[2]);
    } else {
        block.setText(OnlineLayout::nemoCtc, network.files[0]);
    }
    block.setText(OnlineLayout::tokens, network.tokens);
    block.setInteger(OnlineLayout::threadCount, threads);
    block.setText(OnlineLayout::provider, "cpu");
    block.setText(OnlineLayout::decodingMethod, "greedy_search");
    return block;
}

} // namespace

StreamingNetwork::StreamingNetwork(const SpeechRuntime &runtime, const Network &network, int threads)
    : m_runtime(runtime)
    , m_recognizer(nullptr, runtime.destroyOnlineRecognizer)
    , m_stream(nullptr, runtime.destroyOnlineStream)
{
    const ConfigurationBlock block = configurationOf(network, threads);
    try {
        m_recognizer.reset(m_runtime.createOnlineRecognizer(block.data()));
    } catch (const std::exception &error) {
        throw HostFailure(FailureKind::network, error.what());
    }
    if (!m_recognizer) {
        throw HostFailure(FailureKind::network, network.files.front());
    }
}

Hearing StreamingNetwork::decode(std::int64_t start, std::span<const float> samples, bool isComplete)
{
    try {
        if (!m_stream || m_start != start) {
            m_stream.reset(m_runtime.createOnlineStream(m_recognizer.get()));
            m_start = start;
            m_heard = 0;
        }
        accept(samples.subspan(m_heard));
        m_heard = samples.size();
        if (isComplete) {
            accept(std::vector<float>(lookAhead));
            m_runtime.onlineStreamInputFinished(m_stream.get());
        }
        while (m_runtime.isOnlineStreamReady(m_recognizer.get(), m_stream.get()) != 0) {
            m_runtime.decodeOnlineStream(m_recognizer.get(), m_stream.get());
        }
        const Handle result(m_runtime.getOnlineStreamResult(m_recognizer.get(), m_stream.get()),
            m_runtime.destroyOnlineRecognizerResult);
        Hearing hearing;
        hearing.text = result ? textAt(result.get(), onlineResultText) : std::string();
        if (isComplete) {
            m_stream.reset();
        }
        return hearing;
    } catch (const std::exception &error) {
        throw HostFailure(FailureKind::decoding, error.what());
    }
}

void StreamingNetwork::accept(std::span<const float> samples)
{
    m_runtime.onlineStreamAcceptWaveform(m_stream.get(), static_cast<std::int32_t>(samplesPerSecond),
        samples.data(), static_cast<std::int32_t>(samples.size()));
}

} // namespace lumaphone::host
