#pragma once

#include "base/SerialQueue.h"
#include "capture/LiveAudioFeed.h"
#include "capture/LivePipelineServices.h"
#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/StartAttempts.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "platform/MicrophoneCapture.h"

#include <memory>

namespace lumaphone {

/// Transcribes the default microphone.
class MicrophoneLivePipeline final : public LumaphoneLiveAudioPipeline,
                                     public std::enable_shared_from_this<MicrophoneLivePipeline>
{
public:
    /// Captures nothing and asks for nothing yet. The pipeline lives and dies on the main thread.
    static std::shared_ptr<MicrophoneLivePipeline> create(AppleSystemSpeechLanguage sourceLanguage,
        std::shared_ptr<MicrophoneCapture> capture, const LivePipelineServices &services,
        SystemAudioPipelineEventHandler onEvent);
    ~MicrophoneLivePipeline() override;

    /// Throws SystemAudioCaptureError, AppleSystemSpeechTranscriberError, or what the service throws.
    QCoro::Task<> start() override;
    QCoro::Task<> stop() override;

    /// Whether the microphone may be recorded; asks the user only if that was never asked before.
    static QCoro::Task<bool> requestMicrophoneAccessIfNeeded(std::shared_ptr<MicrophoneCapture> capture);

private:
    MicrophoneLivePipeline(AppleSystemSpeechLanguage sourceLanguage,
        std::shared_ptr<MicrophoneCapture> capture, const LivePipelineServices &services,
        SystemAudioPipelineEventHandler onEvent);

    QCoro::Task<> run(int attempt);

    const AppleSystemSpeechLanguage m_sourceLanguage;
    const std::shared_ptr<MicrophoneCapture> m_capture;
    const LiveAudioFeed m_feed;
    StartAttempts m_attempts;
    SerialQueue m_sampleQueue {"dev.lumaphone.microphone-audio-samples"};
    const std::unique_ptr<SoundRecorder> m_recorder;
};

} // namespace lumaphone
