#include "session/SoundCheck.h"

#include "base/LocalizedError.h"
#include "capture/MicrophoneLivePipeline.h"
#include "capture/SoundPeak.h"
#include "capture/SystemAudioCaptureError.h"
#include "session/SessionTexts.h"

#include <utility>

namespace lumaphone {

namespace {

constexpr SoundFormat outputFormat {.sampleRateHz = 16000, .channelCount = 1};

QCoro::Task<SoundDevice> outputOf(std::shared_ptr<ScreenAudioCapture> capture)
{
    using Case = SystemAudioCaptureError::Case;
    if (!capture->preflightAccess()) {
        throw SystemAudioCaptureError(Case::screenAudioPermissionDenied);
    }
    const std::optional<SoundDevice> output = co_await capture->defaultOutput();
    if (!output) {
        throw SystemAudioCaptureError(Case::noDisplay);
    }
    co_return *output;
}

QCoro::Task<SoundDevice> inputOf(std::shared_ptr<MicrophoneCapture> capture)
{
    using Case = SystemAudioCaptureError::Case;
    const bool isGranted = co_await MicrophoneLivePipeline::requestMicrophoneAccessIfNeeded(capture);
    if (!isGranted) {
        throw SystemAudioCaptureError(Case::microphonePermissionDenied);
    }
    const std::optional<SoundDevice> input = co_await capture->defaultInput();
    if (!input) {
        throw SystemAudioCaptureError(Case::microphoneUnavailable);
    }
    co_return *input;
}

/// For someone who asks why nothing is heard.
QString explanationOf(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const SystemAudioCaptureError &known) {
        if (known.errorCase() == SystemAudioCaptureError::Case::noDisplay) {
            return texts::noOutput();
        }
    } catch (...) {
        // Says itself what it is.
    }
    return localizedDescription(error);
}

} // namespace

SoundCheck::SoundCheck(std::shared_ptr<ScreenAudioCapture> screenAudio,
    std::shared_ptr<MicrophoneCapture> microphone, std::shared_ptr<Clock> clock,
    std::shared_ptr<MainQueue> mainQueue, QObject *parent)
    : QObject(parent)
    , m_screenAudio(std::move(screenAudio))
    , m_microphone(std::move(microphone))
    , m_clock(std::move(clock))
    , m_mainQueue(std::move(mainQueue))
{
}

SoundCheck::~SoundCheck()
{
    stop();
}

void SoundCheck::start(LumaphoneAudioInputSource source)
{
    stop();
    m_queue = std::make_unique<SerialQueue>("dev.lumaphone.sound-check");
    m_recorder = source == LumaphoneAudioInputSource::systemAudio ? m_screenAudio->makeRecorder(outputFormat)
                                                                  : m_microphone->makeRecorder();
    listen(this, source, m_attempt);
}

void SoundCheck::stop()
{
    ++m_attempt;
    if (m_recorder) {
        m_recorder->stop();
        m_recorder.reset();
        m_queue.reset();
    }
}

QCoro::Task<> SoundCheck::listen(QPointer<SoundCheck> self, LumaphoneAudioInputSource source, int attempt)
{
    std::exception_ptr failure;
    try {
        const SoundDevice found = co_await self->device(source);
        auto *check = wanting(self, attempt);
        if (!check) {
            co_return;
        }
        emit check->deviceChanged(found.name);
        check = wanting(self, attempt);
        if (!check) {
            co_return;
        }
        co_await check->m_recorder->start(found, *check->m_queue, check->receiver(attempt));
        if (source == LumaphoneAudioInputSource::systemAudio) {
            co_await followOutput(self, found, attempt);
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (auto *check = failure ? wanting(self, attempt) : nullptr) {
        check->fail(failure);
    }
}

/// The recorder goes along by itself when another output becomes the default; this tells its name.
QCoro::Task<> SoundCheck::followOutput(QPointer<SoundCheck> self, SoundDevice device, int attempt)
{
    while (auto *check = wanting(self, attempt)) {
        const std::shared_ptr<Clock> clock = check->m_clock;
        const std::shared_ptr<ScreenAudioCapture> capture = check->m_screenAudio;
        co_await clock->sleepFor(deviceInterval);
        if (!wanting(self, attempt)) {
            co_return;
        }
        const std::optional<SoundDevice> now = co_await capture->defaultOutput();
        check = wanting(self, attempt);
        if (check && now && *now != device) {
            device = *now;
            emit check->deviceChanged(device.name);
        }
    }
}

SoundCheck *SoundCheck::wanting(const QPointer<SoundCheck> &self, int attempt)
{
    SoundCheck *check = self.data();
    return check && check->m_attempt == attempt ? check : nullptr;
}

QCoro::Task<SoundDevice> SoundCheck::device(LumaphoneAudioInputSource source) const
{
    return source == LumaphoneAudioInputSource::systemAudio ? outputOf(m_screenAudio) : inputOf(m_microphone);
}

SoundReceiver SoundCheck::receiver(int attempt)
{
    const auto post = [queue = m_mainQueue, self = QPointer(this), attempt](auto tell) {
        queue->post([self, attempt, tell = std::move(tell)] {
            if (auto *check = wanting(self, attempt)) {
                tell(*check);
            }
        });
    };
    return {
        .onSound =
            [post](const AudioSampleBuffer &buffer) {
                post([peak = soundPeak(buffer)](SoundCheck &check) { emit check.measured(peak); });
            },
        .onEnded =
            [post](const std::exception_ptr &reason) {
                post([reason](SoundCheck &check) { check.fail(reason); });
            },
    };
}

void SoundCheck::fail(const std::exception_ptr &error)
{
    stop();
    emit failed(explanationOf(error));
}

} // namespace lumaphone
