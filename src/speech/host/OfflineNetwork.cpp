#include "speech/host/OfflineNetwork.h"

#include "speech/host/RecognizerConfiguration.h"
#include "speech/host/RuntimeCalls.h"
#include "speech/host/Segmenter.h"

namespace lumaphone::host {

namespace {

// Offsets in the library's OfflineRecognizerConfig.
constexpr std::size_t offlineModel = RecognizerLayout::firstOfModel;
constexpr RecognizerLayout offlineLayout {.tokens = offlineModel + 96,
    .threadCount = offlineModel + 104,
    .provider = offlineModel + 112,
    .decodingMethod = 528};
struct OfflineFilesLayout
{
    enum : std::size_t {
        senseVoiceModel = offlineModel + 152,
        senseVoiceLanguage = offlineModel + 160,
        senseVoiceNormalizes = offlineModel + 168,
        moonshineEncoder = offlineModel + 176 + 8,
        moonshineDecoder = offlineModel + 176 + 32, // the merged one; the others' places stay empty
    };
};

// Offsets in its OfflineRecognizerResult.
struct OfflineResultLayout
{
    enum : std::size_t { text = 0, language = 48, event = 64 };
};

// A Moonshine network now and then finds no words in clear speech, and finds them when it begins a moment
// later.
constexpr std::size_t secondTryShift = samplesPerSecond / 5;

/// "<|ja|>" without its marks.
std::string unmarked(const std::string &mark)
{
    const bool isMarked = mark.size() > 4 && mark.starts_with("<|") && mark.ends_with("|>");
    return isMarked ? mark.substr(2, mark.size() - 4) : mark;
}

void setFiles(ConfigurationBlock &block, const Network &network, const std::string &language)
{
    switch (network.kind) {
    case NetworkKind::senseVoice:
        if (network.files.size() != 1) {
            break;
        }
        block.setText(OfflineFilesLayout::senseVoiceModel, network.files.front());
        block.setText(OfflineFilesLayout::senseVoiceLanguage, language.empty() ? "auto" : language);
        block.setInteger(OfflineFilesLayout::senseVoiceNormalizes, 1);
        return;
    case NetworkKind::moonshine:
        if (network.files.size() != 2) {
            break;
        }
        block.setText(OfflineFilesLayout::moonshineEncoder, network.files[0]);
        block.setText(OfflineFilesLayout::moonshineDecoder, network.files[1]);
        return;
    case NetworkKind::streamingCtc:
    case NetworkKind::streamingTransducer:
        break;
    }
    throw HostFailure(
        FailureKind::network, "a network of whole segments has one file, or an encoder and a decoder");
}

ConfigurationBlock offlineConfiguration(const Network &network, const std::string &language, int threads)
{
    ConfigurationBlock block = recognizerConfiguration(offlineLayout, network, threads);
    setFiles(block, network, language);
    return block;
}

} // namespace

OfflineNetwork::OfflineNetwork(
    const SpeechRuntime &runtime, const Network &network, const std::string &language, int threads)
    : m_runtime(runtime)
    , m_kind(network.kind)
    , m_recognizer(nullptr, runtime.destroyOfflineRecognizer)
{
    const ConfigurationBlock block = offlineConfiguration(network, language, threads);
    m_recognizer.reset(makeOf(network.files.front(), FailureKind::network,
        [&] { return m_runtime.createOfflineRecognizer(block.data()); }));
}

Hearing OfflineNetwork::decode(std::int64_t, std::span<const float> samples, bool isComplete)
{
    Hearing hearing = hear(samples);
    if (isComplete && hearing.text.empty() && m_kind == NetworkKind::moonshine) {
        std::vector<float> later(secondTryShift);
        later.insert(later.end(), samples.begin(), samples.end());
        hearing = hear(later);
    }
    return hearing;
}

Hearing OfflineNetwork::hear(std::span<const float> samples) const
{
    return callRuntime(FailureKind::decoding, [&]() -> Hearing {
        const SpeechRuntime::Handle stream(
            m_runtime.createOfflineStream(m_recognizer.get()), m_runtime.destroyOfflineStream);
        m_runtime.acceptWaveformOffline(stream.get(), static_cast<std::int32_t>(samplesPerSecond),
            samples.data(), static_cast<std::int32_t>(samples.size()));
        m_runtime.decodeOfflineStream(m_recognizer.get(), stream.get());
        const SpeechRuntime::Handle result(
            m_runtime.getOfflineStreamResult(stream.get()), m_runtime.destroyOfflineRecognizerResult);
        if (!result) {
            return {};
        }
        return {textAt(result.get(), OfflineResultLayout::text),
            unmarked(textAt(result.get(), OfflineResultLayout::language)),
            unmarked(textAt(result.get(), OfflineResultLayout::event))};
    });
}

} // namespace lumaphone::host
