#include "session/LivePipelines.h"

#include "capture/MicrophoneLivePipeline.h"
#include "capture/SystemAudioLivePipeline.h"

namespace lumaphone {

std::shared_ptr<LumaphoneLiveAudioPipeline> LivePipelines::operator()(LumaphoneAudioInputSource source,
    AppleSystemSpeechLanguage language, SystemAudioPipelineEventHandler onEvent) const
{
    switch (source) {
    case LumaphoneAudioInputSource::systemAudio:
        return SystemAudioLivePipeline::create(language, screenAudio, clock, services, std::move(onEvent));
    case LumaphoneAudioInputSource::microphone:
        return MicrophoneLivePipeline::create(language, microphone, services, std::move(onEvent));
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
