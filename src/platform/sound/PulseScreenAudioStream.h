#pragma once

#include "base/MainQueue.h"
#include "platform/ScreenAudioCapture.h"
#include "platform/sound/CaptureDelivery.h"
#include "platform/sound/PulseOptions.h"
#include "platform/sound/RecordingThread.h"

#include <memory>
#include <vector>

namespace lumaphone {

/// One capture of what the computer plays, as 16-bit samples of the configured rate and channels. Takes one
/// output for sound; outputs for pictures are accepted and hear nothing.
class PulseScreenAudioStream final : public ScreenAudioStream
{
public:
    PulseScreenAudioStream(std::shared_ptr<MainQueue> mainQueue, PulseOptions options, CaptureDisplay display,
        const ScreenStreamConfiguration &configuration, ScreenAudioStreamDelegate &delegate);
    ~PulseScreenAudioStream() override;

    void addStreamOutput(ScreenAudioStreamOutput &output, SampleBufferType type, SerialQueue &queue) override;
    /// After it returns, the output is not called again for this type.
    void removeStreamOutput(ScreenAudioStreamOutput &output, SampleBufferType type) override;
    QCoro::Task<> startCapture() override;
    QCoro::Task<> stopCapture() override;

    /// Buffers of 20 ms lost because the output's queue fell behind.
    std::size_t droppedBuffers() const { return m_delivery->droppedBuffers(); }

private:
    struct Output
    {
        ScreenAudioStreamOutput *output;
        SampleBufferType type;

        bool operator==(const Output &) const = default;
    };

    RecordingThread::Work work() const;

    std::shared_ptr<MainQueue> m_mainQueue;
    const PulseOptions m_options;
    const CaptureDisplay m_display;
    const ScreenStreamConfiguration m_configuration;
    ScreenAudioStreamDelegate &m_delegate;
    std::vector<Output> m_outputs;
    std::shared_ptr<CaptureDelivery> m_delivery = std::make_shared<CaptureDelivery>();
    std::unique_ptr<RecordingThread> m_recording;
};

} // namespace lumaphone
