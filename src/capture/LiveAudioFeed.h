#pragma once

#include "capture/AppleSystemSpeechTranscriber.h"
#include "capture/LivePipelineServices.h"
#include "capture/PaceWatch.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "platform/SoundRecorder.h"

#include <exception>
#include <memory>

namespace lumaphone {

/// What all pipelines do with their sound: summarise it, have it transcribed, and turn what the transcriber
/// says into events.
class LiveAudioFeed
{
public:
    LiveAudioFeed(const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent);

    /// Hears a recording; a message that the recording ended begins with `whatEnded`. The feed outlives it.
    SoundReceiver receiver(const QString &whatEnded) const;
    AppleSystemSpeechTranscriber &transcriber() const { return *m_transcriber; }
    /// Capture queue: skips a buffer that is not valid or not ready; otherwise transcribes it and tells of
    /// it.
    void handle(const AudioSampleBuffer &buffer) const;
    /// Capture queue, after a buffer of a source that does not wait: tells whether recognition keeps up.
    void watchPace() const;
    /// Any thread: the capture ended by itself.
    void fail(const QString &message) const;

private:
    const QLocale m_locale;
    const SystemAudioPipelineEventHandler m_onEvent;
    const std::shared_ptr<AppleSystemSpeechTranscriberDelegate> m_events;
    const std::shared_ptr<AppleSystemSpeechTranscriber> m_transcriber;
    mutable PaceWatch m_pace; ///< capture queue
};

/// The text for the user when recognition fails: guidance where the system's dictation is switched off,
/// otherwise what the error says.
QString speechFailureMessage(const std::exception_ptr &error);

} // namespace lumaphone
