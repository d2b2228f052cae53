#pragma once

#include "base/SerialQueue.h"
#include "platform/AudioSampleBuffer.h"
#include "platform/CaptureServiceError.h"

#include <QCoroTask>
#include <QString>

#include <chrono>
#include <exception>
#include <memory>
#include <vector>

namespace lumaphone {

/// Something whose sound can be captured: a display elsewhere, an output ("sink") of the sound server here.
struct CaptureDisplay
{
    QString id; ///< the service's own name
    QString name; ///< for people
};

struct ShareableContent
{
    std::vector<CaptureDisplay> displays; ///< the current default first
};

struct CaptureContentFilter
{
    CaptureDisplay display;
};

/// What a stream shall deliver. An adapter without pictures ignores the picture's part.
struct ScreenStreamConfiguration
{
    int widthPixels = 0;
    int heightPixels = 0;
    std::chrono::seconds minimumFrameInterval {0};
    int queueDepth = 0; ///< pictures that may wait for the queue
    bool showsCursor = true;
    bool capturesAudio = false;
    bool excludesCurrentProcessAudio = false;
    int sampleRateHz = 0;
    int channelCount = 0;

    bool operator==(const ScreenStreamConfiguration &) const = default;
};

/// Receives a stream's buffers on the queue given to addStreamOutput(). The view is valid during the call.
class ScreenAudioStreamOutput
{
public:
    virtual ~ScreenAudioStreamOutput() = default;
    virtual void didOutputSampleBuffer(const AudioSampleBuffer &buffer, SampleBufferType type) = 0;
};

/// Told once, on a thread of the service, that a running stream ended by itself.
class ScreenAudioStreamDelegate
{
public:
    virtual ~ScreenAudioStreamDelegate() = default;
    virtual void didStopWithError(std::exception_ptr error) = 0;
};

/// One capture. Made, started and stopped on the main thread. Outputs, delegate and queue belong to the
/// caller and must outlive the stream or be removed by stopCapture(), whichever comes first.
class ScreenAudioStream
{
public:
    virtual ~ScreenAudioStream() = default;
    /// Throws CaptureServiceError.
    virtual void addStreamOutput(ScreenAudioStreamOutput &output, SampleBufferType type, SerialQueue &queue)
        = 0;
    /// Throws CaptureServiceError if it was not added.
    virtual void removeStreamOutput(ScreenAudioStreamOutput &output, SampleBufferType type) = 0;
    /// Returns when sound is being recorded from the wanted output and from nothing else.
    /// Throws CaptureServiceError. Afterwards the stream follows the default output by itself.
    virtual QCoro::Task<> startCapture() = 0;
    /// After it returns, neither output nor delegate is called again. Throws CaptureServiceError.
    virtual QCoro::Task<> stopCapture() = 0;
};

/// The service that records what the computer plays. Main thread.
class ScreenAudioCapture
{
public:
    virtual ~ScreenAudioCapture() = default;
    /// Whether this process may record the computer's sound.
    virtual bool preflightAccess() = 0;
    /// Asks the user for that right and returns at once; the answer shows in preflightAccess().
    virtual void requestAccess() = 0;
    /// Throws CaptureServiceError.
    virtual QCoro::Task<ShareableContent> shareableContent(
        bool excludingDesktopWindows, bool onScreenWindowsOnly)
        = 0;
    virtual std::unique_ptr<ScreenAudioStream> makeStream(const CaptureContentFilter &filter,
        const ScreenStreamConfiguration &configuration, ScreenAudioStreamDelegate &delegate)
        = 0;
};

} // namespace lumaphone
