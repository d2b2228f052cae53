#include "speech/host/VoiceDetector.h"

#include "speech/host/ConfigurationBlock.h"
#include "speech/host/RuntimeCalls.h"
#include "speech/host/Segmenter.h"

#include <algorithm>

namespace lumaphone::host {

namespace {

// Offsets in the library's VadModelConfig.
struct DetectorLayout
{
    enum : std::size_t {
        model = 0,
        threshold = 8,
        minimumSilence = 12,
        minimumSpeech = 16,
        window = 20,
        maximumSpeech = 24,
        sampleRate = 32,
        threadCount = 36,
        provider = 40,
    };
};

constexpr float hysteresisSeconds = 0.1F;
// Past its limit the detector becomes stricter by itself. Segments end long before.
constexpr float longestSpeechSeconds = 60.F;
constexpr float bufferSeconds = 30.F;
// After it has forgotten, it hesitates as at any beginning of speech.
constexpr int hesitationWindows = 6;

} // namespace

VoiceDetector::VoiceDetector(const SpeechRuntime &runtime, const std::string &modelFile, float threshold)
    : m_runtime(runtime)
    , m_detector(nullptr, runtime.destroyVoiceActivityDetector)
{
    ConfigurationBlock block;
    block.setText(DetectorLayout::model, modelFile);
    block.setFloat(DetectorLayout::threshold, threshold);
    block.setFloat(DetectorLayout::minimumSilence, hysteresisSeconds);
    block.setFloat(DetectorLayout::minimumSpeech, hysteresisSeconds);
    block.setInteger(DetectorLayout::window, windowSize);
    block.setFloat(DetectorLayout::maximumSpeech, longestSpeechSeconds);
    block.setInteger(DetectorLayout::sampleRate, static_cast<std::int32_t>(samplesPerSecond));
    block.setInteger(DetectorLayout::threadCount, 1);
    block.setText(DetectorLayout::provider, "cpu");
    m_detector.reset(makeOf(modelFile, FailureKind::voiceDetector,
        [&] { return m_runtime.createVoiceActivityDetector(block.data(), bufferSeconds); }));
}

bool VoiceDetector::isSpeech(std::span<const float> samples)
{
    return callRuntime(FailureKind::voiceDetector, [&] {
        m_runtime.voiceActivityDetectorAcceptWaveform(
            m_detector.get(), samples.data(), static_cast<std::int32_t>(samples.size()));
        // It collects segments of its own, which nobody needs.
        while (m_runtime.voiceActivityDetectorEmpty(m_detector.get()) == 0) {
            m_runtime.voiceActivityDetectorPop(m_detector.get());
        }
        m_assumedSpeech = std::max(0, m_assumedSpeech - 1);
        return m_runtime.voiceActivityDetectorDetected(m_detector.get()) != 0 || m_assumedSpeech > 0;
    });
}

void VoiceDetector::forgetSound()
{
    m_runtime.voiceActivityDetectorFlush(m_detector.get());
    while (m_runtime.voiceActivityDetectorEmpty(m_detector.get()) == 0) {
        m_runtime.voiceActivityDetectorPop(m_detector.get());
    }
    m_assumedSpeech = hesitationWindows;
}

} // namespace lumaphone::host
