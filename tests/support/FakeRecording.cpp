#include "support/FakeRecording.h"

#include <thread>
#include <utility>

namespace lumaphone::test {

class FakeRecording::Recorder final : public SoundRecorder
{
public:
    explicit Recorder(std::shared_ptr<FakeRecording> recording)
        : m_recording(std::move(recording))
    {
    }
    ~Recorder() override { end(); }

    QCoro::Task<> start(SoundDevice device, SerialQueue &queue, SoundReceiver receiver) override
    {
        end();
        const std::shared_ptr<FakeRecording> recording = m_recording;
        recording->steps.append(QStringLiteral("start ") + device.id);
        m_hasStarted = true;
        recording->m_queue = &queue;
        recording->m_receiver = std::move(receiver);
        const int attempt = ++recording->m_start;
        co_await recording->startGate.passage();
        if (attempt != recording->m_start) {
            throw CaptureServiceError(QStringLiteral("stopped while starting"));
        }
        if (recording->startFailure) {
            recording->forgetReceiver();
            throw CaptureServiceError(*recording->startFailure);
        }
        recording->m_isRunning = true;
    }

    void stop() override { end(); }

private:
    void end()
    {
        if (!std::exchange(m_hasStarted, false)) {
            return;
        }
        m_recording->steps.append(QStringLiteral("stop"));
        ++m_recording->m_start;
        m_recording->m_isRunning = false;
        m_recording->forgetReceiver();
    }

    const std::shared_ptr<FakeRecording> m_recording;
    bool m_hasStarted = false;
};

std::unique_ptr<SoundRecorder> FakeRecording::makeRecorder()
{
    ++m_recordersMade;
    return std::make_unique<Recorder>(shared_from_this());
}

void FakeRecording::deliver(const AudioSampleBuffer &buffer) const
{
    m_queue->post([this, &buffer] { m_receiver.onSound(buffer); });
    m_queue->drain();
}

void FakeRecording::await(const std::optional<QString> &name)
{
    std::jthread([this, name] { m_receiver.onAwaited(name); }).join();
}

void FakeRecording::endBySelf(const QString &reason)
{
    m_isRunning = false;
    std::jthread([this, reason] {
        m_receiver.onEnded(std::make_exception_ptr(CaptureServiceError(reason)));
    }).join();
}

void FakeRecording::forgetReceiver()
{
    m_queue = nullptr;
    m_receiver = {};
}

} // namespace lumaphone::test
