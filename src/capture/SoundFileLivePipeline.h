#pragma once

#include "base/SerialQueue.h"
#include "capture/LiveAudioFeed.h"
#include "capture/LivePipelineServices.h"
#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/SoundFileReader.h"
#include "capture/StartAttempts.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "platform/Clock.h"

#include <functional>
#include <memory>
#include <stop_token>

namespace lumaphone {

enum class SoundFilePace {
    asFastAsRecognised, ///< the recogniser alone sets the pace
    speedOfSound, ///< as if the file were being played
};

/// Transcribes a sound file. None of it is ever dropped: a slow recogniser holds the reading up.
class SoundFileLivePipeline final : public LumaphoneLiveAudioPipeline,
                                    public std::enable_shared_from_this<SoundFileLivePipeline>
{
public:
    /// Opens nothing yet. The pipeline lives and dies on the main thread. `onCompleted` is called once on a
    /// background thread when the file was heard to its end and all its texts were sent; not after a
    /// `failed` event or a stop(), though one already on its way may still come.
    static std::shared_ptr<SoundFileLivePipeline> create(const QString &path,
        AppleSystemSpeechLanguage sourceLanguage, SoundFilePace pace, std::shared_ptr<Clock> clock,
        const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent,
        std::function<void()> onCompleted);
    ~SoundFileLivePipeline() override;

    /// Throws SoundFileError before anything else is started, or AppleSystemSpeechTranscriberError.
    QCoro::Task<> start() override;
    QCoro::Task<> stop() override;

private:
    using Reader = std::shared_ptr<SoundFileReader>;

    SoundFileLivePipeline(const QString &path, AppleSystemSpeechLanguage sourceLanguage, SoundFilePace pace,
        std::shared_ptr<Clock> clock, const LivePipelineServices &services,
        SystemAudioPipelineEventHandler onEvent, std::function<void()> onCompleted);

    QCoro::Task<> run(int attempt);
    QCoro::Task<Reader> open();
    static QCoro::Task<> readAtSpeedOfSound(std::weak_ptr<SoundFileLivePipeline> weakSelf,
        std::shared_ptr<Clock> clock, Reader reader, std::stop_token stop);
    void readToEnd(SoundFileReader &reader, const std::stop_token &stop) const;
    bool readBlock(SoundFileReader &reader, const std::stop_token &stop) const;
    void finish(const SoundFileReader &reader) const;

    const QString m_path;
    const AppleSystemSpeechLanguage m_sourceLanguage;
    const SoundFilePace m_pace;
    const std::shared_ptr<Clock> m_clock;
    const std::shared_ptr<MainQueue> m_mainQueue;
    const LiveAudioFeed m_feed;
    const std::function<void()> m_onCompleted;
    StartAttempts m_attempts;
    std::stop_source m_reading;
    SerialQueue m_sampleQueue {"app.lumaphone.sound-file-samples"};
};

} // namespace lumaphone
