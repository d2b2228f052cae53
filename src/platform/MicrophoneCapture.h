#pragma once

#include "base/SerialQueue.h"
#include "platform/AudioSampleBuffer.h"
#include "platform/CaptureServiceError.h"

#include <QCoroTask>
#include <QString>

#include <exception>
#include <memory>
#include <optional>
#include <vector>

namespace lumaphone {

enum class CaptureAuthorization { NotDetermined, Restricted, Denied, Authorized };

struct MicrophoneDevice
{
    QString id; ///< the service's own name
    QString name; ///< for people
};

/// An opened device, ready to join a session.
class MicrophoneInput
{
public:
    virtual ~MicrophoneInput() = default;
};

/// Receives a session's buffers on the output's queue. The view is valid during the call.
class MicrophoneSampleDelegate
{
public:
    virtual ~MicrophoneSampleDelegate() = default;
    virtual void didOutputSampleBuffer(const AudioSampleBuffer &buffer) = 0;
    /// Once, on a thread of the service: the running session lost its device or the service.
    virtual void didStopWithError(std::exception_ptr error) = 0;
};

/// Where a session delivers its sound.
class MicrophoneOutput
{
public:
    virtual ~MicrophoneOutput() = default;
    /// Null for both detaches: after the call returns, the former delegate is never called again.
    /// Must not be called on the queue.
    virtual void setSampleBufferDelegate(MicrophoneSampleDelegate *delegate, SerialQueue *queue) = 0;
};

/// A capture of one device in the device's own rate and channels. Main thread.
/// Changes between beginConfiguration() and commitConfiguration() take effect together.
class MicrophoneSession
{
public:
    virtual ~MicrophoneSession() = default;
    virtual bool canAddInput(const MicrophoneInput &input) const = 0;
    virtual bool canAddOutput(const MicrophoneOutput &output) const = 0;
    virtual void beginConfiguration() = 0;
    virtual void commitConfiguration() = 0;
    virtual std::vector<std::shared_ptr<MicrophoneInput>> inputs() const = 0;
    virtual std::vector<std::shared_ptr<MicrophoneOutput>> outputs() const = 0;
    virtual void addInput(std::shared_ptr<MicrophoneInput> input) = 0;
    virtual void removeInput(const std::shared_ptr<MicrophoneInput> &input) = 0;
    virtual void addOutput(std::shared_ptr<MicrophoneOutput> output) = 0;
    virtual void removeOutput(const std::shared_ptr<MicrophoneOutput> &output) = 0;
    /// Returns when the device is recording. Throws CaptureServiceError.
    virtual QCoro::Task<> startRunning() = 0;
    virtual bool isRunning() const = 0;
    virtual void stopRunning() = 0;
};

/// The service that records microphones. Main thread.
class MicrophoneCapture
{
public:
    virtual ~MicrophoneCapture() = default;
    virtual CaptureAuthorization authorizationStatus() = 0;
    /// Asks the user and returns the answer.
    virtual QCoro::Task<bool> requestAccess() = 0;
    /// The current default input, or none. What records an output is not a microphone. Throws
    /// CaptureServiceError if the service does not answer.
    virtual QCoro::Task<std::optional<MicrophoneDevice>> defaultDevice() = 0;
    /// Takes a device that defaultDevice() gave. Throws CaptureServiceError if it has gone.
    virtual std::shared_ptr<MicrophoneInput> makeInput(const MicrophoneDevice &device) = 0;
    virtual std::shared_ptr<MicrophoneOutput> makeOutput() = 0;
    virtual std::unique_ptr<MicrophoneSession> makeSession() = 0;
};

} // namespace lumaphone
