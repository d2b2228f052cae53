#include "speech/host/OfflineNetwork.h"

#include "speech/host/ConfigurationBlock.h"
#include "speech/host/HostFailure.h"
#include "speech/host/Segmenter.h"

namespace lumaphone::host {

namespace {

// Offsets in the library's OfflineRecognizerConfig.
struct OfflineLayout
{
    enum : std::size_t {
        sampleRate = 0,
        featureDimension = 4,
        tokens = 8 + 96,
        threadCount = 8 + 104,
        provider = 8 + 112,
        senseVoiceModel = 8 + 152,
        senseVoiceLanguage = 8 + 160,
        senseVoiceNormalizes = 8 + 168,
        moonshineEncoder = 8 + 176 + 8,
        moonshineDecoder = 8 + 176 + 32, // the merged one; the others' places stay empty
        decodingMethod = 528,
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
        block.setText(OfflineLayout::senseVoiceModel, network.files.front());
        block.setText(OfflineLayout::senseVoiceLanguage, language.empty() ? "auto" : language);
        block.setInteger(OfflineLayout::senseVoiceNormalizes, 1);
        return;
    case NetworkKind::moonshine:
        if (network.files.size() != 2) {
            break;
        }
        block.setText(OfflineLayout::moonshineEncoder, network.files[0]);
        block.setText(OfflineLayout::moonshineDecoder, network.files[1]);
        return;
    case NetworkKind::streamingCtc:
    case NetworkKind::streamingTransducer:
        break;
    }
    throw HostFailure(
        FailureKind::network, "a network of whole segments has one file, or an encoder and a decoder");
}

ConfigurationBlock configurationOf(const Network &network, const std::string &language, int threads)
{
    ConfigurationBlock block;
    block.setInteger(OfflineLayout::sampleRate, static_cast<std::int32_t>(samplesPerSecond));
    block.setInteger(OfflineLayout::featureDimension, 80);
    block.setText(OfflineLayout::tokens, network.tokens);
    block.setInteger(OfflineLayout::threadCount, threads);
    block.setText(OfflineLayout::provider, "cpu");
    setFiles(block, network, language);
    block.setText(OfflineLayout::decodingMethod, "greedy_search");
    return block;
}

} // namespace

OfflineNetwork::OfflineNetwork(
    const SpeechRuntime &runtime, const Network &network, const std::string &language, int threads)
    : m_runtime(runtime)
    , m_kind(network.kind)
    , m_recognizer(nullptr, runtime.destroyOfflineRecognizer)
{
    const ConfigurationBlock block = configurationOf(network, language, threads);
    try {
        m_recognizer.reset(m_runtime.createOfflineRecognizer(block.data()));
    } catch (const std::exception &error) {
        throw HostFailure(FailureKind::network, error.what());
    }
    if (!m_recognizer) {
        throw HostFailure(FailureKind::network, network.files.front());
    }
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
    try {
        const std::unique_ptr<const void, void (*)(const void *)> stream(
            m_runtime.createOfflineStream(m_recognizer.get()), m_runtime.destroyOfflineStream);
        m_runtime.acceptWaveformOffline(stream.get(), static_cast<std::int32_t>(samplesPerSecond),
            samples.data(), static_cast<std::int32_t>(samples.size()));
        m_runtime.decodeOfflineStream(m_recognizer.get(), stream.get());
        const std::unique_ptr<const void, void (*)(const void *)> result(
            m_runtime.getOfflineStreamResult(stream.get()), m_runtime.destroyOfflineRecognizerResult);
        if (!result) {
            return {};
        }
        return {textAt(result.get(), OfflineResultLayout::text),
            unmarked(textAt(result.get(), OfflineResultLayout::language)),
            unmarked(textAt(result.get(), OfflineResultLayout::event))};
    } catch (const std::exception &error) {
        throw HostFailure(FailureKind::decoding, error.what());
    }
}

} // namespace lumaphone::host
