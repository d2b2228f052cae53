#include "platform/sound/ThreadedSoundRecorder.h"

#include <utility>

namespace lumaphone {

ThreadedSoundRecorder::ThreadedSoundRecorder(std::shared_ptr<MainQueue> mainQueue, Record record)
    : m_mainQueue(std::move(mainQueue))
    , m_record(std::move(record))
{
}

ThreadedSoundRecorder::~ThreadedSoundRecorder()
{
    stop();
}

QCoro::Task<> ThreadedSoundRecorder::start(SoundDevice device, SerialQueue &queue, SoundReceiver receiver)
{
    stop();
    const auto delivery = std::make_shared<CaptureDelivery>();
    delivery->attach(queue, std::move(receiver));
    m_delivery = delivery;
    m_recording = std::make_unique<RecordingThread>(
        m_mainQueue,
        [record = m_record, device = std::move(device), delivery](const std::stop_token &stop,
            const std::function<void()> &hasStarted) { record(device, *delivery, stop, hasStarted); },
        [delivery](const std::exception_ptr &reason) { delivery->fail(reason); });
    const Completion<> started = m_recording->started();
    try {
        co_await started; // the recorder may be gone afterwards
    } catch (...) {
        delivery->detach();
        throw;
    }
}

void ThreadedSoundRecorder::stop()
{
    m_delivery->detach();
    m_recording.reset();
}

} // namespace lumaphone
