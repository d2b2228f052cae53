#include "capture/LiveAudioFeed.h"

#include "base/LocalizedError.h"

#include <utility>

namespace lumaphone {

namespace {

/// Held by the transcriber's tasks while they deliver; owns nothing that belongs to the main thread.
class TranscriberEvents final : public AppleSystemSpeechTranscriberDelegate
{
public:
    explicit TranscriberEvents(SystemAudioPipelineEventHandler onEvent)
        : m_onEvent(std::move(onEvent))
    {
    }

    void didRecognize(AppleSystemSpeechTranscriber &, const QString &text, AppleSystemSpeechLanguage language,
        bool isFinal) override
    {
        m_onEvent(pipeline_event::Speech {text, language, isFinal});
    }

    void didFail(AppleSystemSpeechTranscriber &, std::exception_ptr error) override
    {
        m_onEvent(pipeline_event::Failed {speechFailureMessage(error)});
    }

private:
    const SystemAudioPipelineEventHandler m_onEvent;
};

} // namespace

QString speechFailureMessage(const std::exception_ptr &error)
{
    const QString description = localizedDescription(error);
    if (description.contains(QStringLiteral("Siri and Dictation are disabled"), Qt::CaseInsensitive)) {
        return QStringLiteral("Apple Speech 錯誤：macOS 目前停用 Siri 與聽寫。請到系統設定開啟 Siri "
                              "或鍵盤聽寫後，再重新開始 Lumaphone。");
    }
    return QStringLiteral("Apple Speech 錯誤：") + description;
}

LiveAudioFeed::LiveAudioFeed(const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent)
    : m_locale(services.locale)
    , m_onEvent(std::move(onEvent))
    , m_events(std::make_shared<TranscriberEvents>(m_onEvent))
    , m_transcriber(AppleSystemSpeechTranscriber::create(
          services.speechFramework, services.mainQueue, services.detachedTasks))
{
    m_transcriber->setDelegate(m_events);
}

SoundReceiver LiveAudioFeed::receiver(const QString &whatEnded) const
{
    return {
        .onSound =
            [this](const AudioSampleBuffer &buffer) {
                handle(buffer);
                watchPace();
            },
        .onEnded = [this, whatEnded](
                       const std::exception_ptr &reason) { fail(whatEnded + localizedDescription(reason)); },
        .onAwaited
        = [this](const std::optional<QString> &name) { m_onEvent(pipeline_event::Awaited {name}); },
    };
}

void LiveAudioFeed::handle(const AudioSampleBuffer &buffer) const
{
    if (!buffer.isValid || !buffer.dataIsReady) {
        return;
    }
    m_transcriber->append(buffer);
    m_onEvent(pipeline_event::AudioSample {makeSummary(buffer, m_locale)});
}

void LiveAudioFeed::watchPace() const
{
    if (const auto isBehind = m_pace.note(m_transcriber->waitingSound())) {
        m_onEvent(pipeline_event::Pace {*isBehind});
    }
}

void LiveAudioFeed::fail(const QString &message) const
{
    m_onEvent(pipeline_event::Failed {message});
}

} // namespace lumaphone
