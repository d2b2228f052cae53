#pragma once

#include "capture/LivePipelineServices.h"
#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "platform/Clock.h"
#include "platform/MicrophoneCapture.h"
#include "platform/ScreenAudioCapture.h"
#include "storage/LumaphoneAudioInputSource.h"

#include <memory>

namespace lumaphone {

/// Builds the pipelines of live sessions from the machine's services: a LivePipelineMaker.
struct LivePipelines
{
    std::shared_ptr<ScreenAudioCapture> screenAudio;
    std::shared_ptr<MicrophoneCapture> microphone;
    std::shared_ptr<Clock> clock;
    LivePipelineServices services;

    std::shared_ptr<LumaphoneLiveAudioPipeline> operator()(LumaphoneAudioInputSource source,
        AppleSystemSpeechLanguage language, SystemAudioPipelineEventHandler onEvent) const;
};

} // namespace lumaphone
