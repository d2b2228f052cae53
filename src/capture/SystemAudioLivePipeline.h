#pragma once

#include "base/SerialQueue.h"
#include "capture/LiveAudioFeed.h"
#include "capture/LivePipelineServices.h"
#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/StartAttempts.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "platform/Clock.h"
#include "platform/ScreenAudioCapture.h"

#include <memory>

namespace lumaphone {

/// Transcribes the sound that the computer plays.
class SystemAudioLivePipeline final : public LumaphoneLiveAudioPipeline,
                                      public std::enable_shared_from_this<SystemAudioLivePipeline>
{
public:
    /// Captures nothing and asks for nothing yet. The pipeline lives and dies on the main thread.
    static std::shared_ptr<SystemAudioLivePipeline> create(AppleSystemSpeechLanguage sourceLanguage,
        std::shared_ptr<ScreenAudioCapture> capture, std::shared_ptr<Clock> clock,
        const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent);
    ~SystemAudioLivePipeline() override;

    /// Throws SystemAudioCaptureError, AppleSystemSpeechTranscriberError, or what the service throws.
    QCoro::Task<> start() override;
    QCoro::Task<> stop() override;

    /// Whether the computer's sound may be recorded; if not, asks the user and waits about six seconds for
    /// the answer.
    static QCoro::Task<bool> requestScreenCaptureAccessIfNeeded(
        std::shared_ptr<ScreenAudioCapture> capture, std::shared_ptr<Clock> clock);

private:
    SystemAudioLivePipeline(AppleSystemSpeechLanguage sourceLanguage,
        std::shared_ptr<ScreenAudioCapture> capture, std::shared_ptr<Clock> clock,
        const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent);

    QCoro::Task<> run(int attempt);

    const AppleSystemSpeechLanguage m_sourceLanguage;
    const std::shared_ptr<ScreenAudioCapture> m_capture;
    const std::shared_ptr<Clock> m_clock;
    const LiveAudioFeed m_feed;
    StartAttempts m_attempts;
    SerialQueue m_sampleQueue {"app.lumaphone.system-audio-samples"};
    const std::unique_ptr<SoundRecorder> m_recorder;
};

} // namespace lumaphone
