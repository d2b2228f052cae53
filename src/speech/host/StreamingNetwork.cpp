#include "speech/host/StreamingNetwork.h"

#include "speech/host/RecognizerConfiguration.h"
#include "speech/host/RuntimeCalls.h"
#include "speech/host/Segmenter.h"

#include <vector>

namespace lumaphone::host {

namespace {

// Offsets in the library's OnlineRecognizerConfig.
constexpr std::size_t onlineModel = RecognizerLayout::firstOfModel;
constexpr RecognizerLayout onlineLayout {.tokens = onlineModel + 48,
    .threadCount = onlineModel + 56,
    .provider = onlineModel + 64,
    .decodingMethod = 144};
struct OnlineFilesLayout
{
    enum : std::size_t {
        encoder = onlineModel + 0,
        decoder = onlineModel + 8,
        joiner = onlineModel + 16,
        nemoCtc = onlineModel + 120,
    };
};

constexpr std::size_t onlineResultText = 0;

// Networks look a little ahead: the end of a segment is followed by so much silence.
constexpr std::size_t lookAhead = samplesPerSecond;

ConfigurationBlock onlineConfiguration(const Network &network, int threads)
{
    const bool isTransducer = network.kind == NetworkKind::streamingTransducer;
    if (network.files.size() != (isTransducer ? 3 : 1)) {
        throw HostFailure(FailureKind::network, "a streaming network has one file, a transducer three");
    }
    ConfigurationBlock block = recognizerConfiguration(onlineLayout, network, threads);
    if (isTransducer) {
        block.setText(OnlineFilesLayout::encoder, network.files[0]);
        block.setText(OnlineFilesLayout::decoder, network.files[1]);
        block.setText(OnlineFilesLayout::joiner, network.files[2]);
    } else {
        block.setText(OnlineFilesLayout::nemoCtc, network.files[0]);
    }
    return block;
}

} // namespace

StreamingNetwork::StreamingNetwork(const SpeechRuntime &runtime, const Network &network, int threads)
    : m_runtime(runtime)
    , m_recognizer(nullptr, runtime.destroyOnlineRecognizer)
    , m_stream(nullptr, runtime.destroyOnlineStream)
{
    const ConfigurationBlock block = onlineConfiguration(network, threads);
    m_recognizer.reset(makeOf(network.files.front(), FailureKind::network,
        [&] { return m_runtime.createOnlineRecognizer(block.data()); }));
}

Hearing StreamingNetwork::decode(std::int64_t start, std::span<const float> samples, bool isComplete)
{
    return callRuntime(FailureKind::decoding, [&] {
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
        const SpeechRuntime::Handle result(
            m_runtime.getOnlineStreamResult(m_recognizer.get(), m_stream.get()),
            m_runtime.destroyOnlineRecognizerResult);
        Hearing hearing;
        hearing.text = result ? textAt(result.get(), onlineResultText) : std::string();
        if (isComplete) {
            m_stream.reset();
        }
        return hearing;
    });
}

void StreamingNetwork::accept(std::span<const float> samples)
{
    m_runtime.onlineStreamAcceptWaveform(m_stream.get(), static_cast<std::int32_t>(samplesPerSecond),
        samples.data(), static_cast<std::int32_t>(samples.size()));
}

} // namespace lumaphone::host
