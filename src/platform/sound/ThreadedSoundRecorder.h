#pragma once

#include "base/MainQueue.h"
#include "platform/SoundRecorder.h"
#include "platform/sound/CaptureDelivery.h"
#include "platform/sound/RecordingThread.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>

namespace lumaphone {

/// Runs a way of recording on a thread of its own.
class ThreadedSoundRecorder final : public SoundRecorder
{
public:
    /// Prepares the delivery, calls `hasStarted` when the device's sound flows there, and records until a
    /// stop is requested or an error, which it throws.
    using Record = std::function<void(const SoundDevice &device, CaptureDelivery &delivery,
        const std::stop_token &stop, const std::function<void()> &hasStarted)>;

    ThreadedSoundRecorder(std::shared_ptr<MainQueue> mainQueue, Record record);
    ~ThreadedSoundRecorder() override;

    QCoro::Task<> start(SoundDevice device, SerialQueue &queue, SoundReceiver receiver) override;
    void stop() override;

    /// Buffers of 20 ms that the newest recording lost because its queue fell behind.
    std::size_t droppedBuffers() const { return m_delivery->droppedBuffers(); }

private:
    std::shared_ptr<MainQueue> m_mainQueue;
    const Record m_record;
    std::shared_ptr<CaptureDelivery> m_delivery = std::make_shared<CaptureDelivery>();
    std::unique_ptr<RecordingThread> m_recording;
};

} // namespace lumaphone
