#pragma once

#include "speech/host/SpeechRuntime.h"

#include <span>

namespace lumaphone::host {

/// Tells speech from everything else, window by window.
class VoiceDetector
{
public:
    /// Samples of one decision.
    static constexpr std::size_t windowSize = 512;

    /// `threshold`: of the probability of speech, above 0 and below 1. Throws HostFailure (voiceDetector).
    VoiceDetector(const SpeechRuntime &runtime, const std::string &model, float threshold);

    /// Whether speech is going on at the end of the next window. Decisions against speech come 0.1 s late.
    bool isSpeech(std::span<const float> window);
    /// To be called when a segment was cut within speech: what came before is not needed any more. Speech
    /// goes on meanwhile.
    void forgetSound();

private:
    const SpeechRuntime &m_runtime;
    SpeechRuntime::Handle m_detector;
    int m_assumedSpeech = 0; ///< windows for which it cannot know yet
};

} // namespace lumaphone::host
