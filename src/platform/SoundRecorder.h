#pragma once

#include "base/SerialQueue.h"
#include "platform/AudioSampleBuffer.h"
#include "platform/CaptureServiceError.h"

#include <QCoroTask>
#include <QString>

#include <exception>
#include <functional>
#include <optional>

namespace lumaphone {

/// Something that can be recorded: an output of the computer, or a microphone.
struct SoundDevice
{
    QString id; ///< the service's own name
    QString name; ///< for people

    bool operator==(const SoundDevice &) const = default;
};

/// How a recording shall be delivered: 16-bit samples of this rate and number of channels.
struct SoundFormat
{
    int sampleRateHz = 0;
    int channelCount = 0;

    bool operator==(const SoundFormat &) const = default;
};

/// Who hears a recording. No function may block, nor stop the recorder.
struct SoundReceiver
{
    /// The next buffer, on the queue given to start(). The view is valid during the call.
    std::function<void(const AudioSampleBuffer &buffer)> onSound;
    /// A started recording has ended by itself: at most once, on a thread of the service.
    std::function<void(const std::exception_ptr &reason)> onEnded;
    /// The device, of this name for people, has gone and is waited for, or with none that sound flows again.
    /// On the same thread, before onEnded().
    std::function<void(const std::optional<QString> &name)> onAwaited = {};
};

/// Records one device at a time. Main thread.
class SoundRecorder
{
public:
    /// As stop().
    virtual ~SoundRecorder() = default;
    /// Returns when the sound of this device and of nothing else flows. A recording that runs is ended first.
    /// The queue outlives the recording. Throws CaptureServiceError, also when it is stopped meanwhile; then
    /// nothing is delivered any more. The recorder need not outlive the call.
    virtual QCoro::Task<> start(SoundDevice device, SerialQueue &queue, SoundReceiver receiver) = 0;
    /// Ends the recording or its start, in any state, without fail. When it returns, nothing is delivered any
    /// more and the device is free; no service can delay that.
    virtual void stop() = 0;
};

} // namespace lumaphone
