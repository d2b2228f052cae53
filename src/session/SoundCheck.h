#pragma once

#include "base/MainQueue.h"
#include "base/SerialQueue.h"
#include "platform/Clock.h"
#include "platform/MicrophoneCapture.h"
#include "platform/ScreenAudioCapture.h"
#include "storage/LumaphoneAudioInputSource.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <memory>
#include <optional>

namespace lumaphone {

/// Listens to a source of sound only to tell how loud it is: nothing is recognised, and nothing is kept. Main
/// thread.
class SoundCheck final : public QObject
{
    Q_OBJECT

public:
    /// How often it is asked which output is heard now.
    static constexpr std::chrono::seconds deviceInterval {2};

    SoundCheck(std::shared_ptr<ScreenAudioCapture> screenAudio, std::shared_ptr<MicrophoneCapture> microphone,
        std::shared_ptr<Clock> clock, std::shared_ptr<MainQueue> mainQueue, QObject *parent = nullptr);
    /// As stop().
    ~SoundCheck() override;

    /// Returns at once; a check that runs ends first. What happens is told by the signals.
    void start(LumaphoneAudioInputSource source);
    /// When it returns, nothing is recorded any more, and no signal follows.
    void stop();
    /// From start() until stop() or a failure.
    bool isListening() const { return m_recorder != nullptr; }

signals:
    /// What is listened to, at first and when another output has taken its place.
    void deviceChanged(const QString &name);
    /// The peak of a buffer, from 0 to 1.
    void measured(double peak);
    /// There is nothing to listen to, or it has ended by itself.
    void failed(const QString &message);

private:
    static QCoro::Task<> listen(QPointer<SoundCheck> self, LumaphoneAudioInputSource source, int attempt);
    static QCoro::Task<> followOutput(QPointer<SoundCheck> self, SoundDevice device, int attempt);
    /// The check, if it is still there and the attempt is its newest.
    static SoundCheck *wanting(const QPointer<SoundCheck> &self, int attempt);
    QCoro::Task<SoundDevice> device(LumaphoneAudioInputSource source) const;
    SoundReceiver receiver(int attempt);
    void fail(const std::exception_ptr &error);

    const std::shared_ptr<ScreenAudioCapture> m_screenAudio;
    const std::shared_ptr<MicrophoneCapture> m_microphone;
    const std::shared_ptr<Clock> m_clock;
    const std::shared_ptr<MainQueue> m_mainQueue;
    int m_attempt = 0; ///< counts starts and stops
    std::unique_ptr<SerialQueue> m_queue;
    std::unique_ptr<SoundRecorder> m_recorder; ///< goes before its queue
};

} // namespace lumaphone
