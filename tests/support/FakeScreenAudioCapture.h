#pragma once

#include "platform/ScreenAudioCapture.h"
#include "support/CoroutineGate.h"

#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace lumaphone::test {

/// What happened to a fake capture and its streams; outlives both.
struct ScreenAudioCaptureLog
{
    QStringList steps;
};

/// A stream whose sound the test plays. Main thread.
class FakeScreenAudioStream final : public ScreenAudioStream
{
public:
    FakeScreenAudioStream(std::shared_ptr<ScreenAudioCaptureLog> log, ScreenAudioStreamDelegate &delegate)
        : m_log(std::move(log))
        , m_delegate(delegate)
    {
    }
    ~FakeScreenAudioStream() override;

    std::optional<QString> addAudioFailure;
    std::optional<QString> startFailure;
    std::optional<QString> stopFailure;
    CoroutineGate *startGate = nullptr;

    void addStreamOutput(ScreenAudioStreamOutput &output, SampleBufferType type, SerialQueue &queue) override;
    void removeStreamOutput(ScreenAudioStreamOutput &output, SampleBufferType type) override;
    QCoro::Task<> startCapture() override;
    QCoro::Task<> stopCapture() override;

    bool isCapturing() const { return m_isCapturing; }
    /// Delivers a buffer on the output's queue and returns when it was taken.
    void deliver(const AudioSampleBuffer &buffer, SampleBufferType type = SampleBufferType::Audio);
    /// Ends the stream by itself, on a thread of its own.
    void failBySelf(const QString &message);
    SerialQueue *queue() const { return m_queue; }

private:
    std::shared_ptr<ScreenAudioCaptureLog> m_log;
    ScreenAudioStreamDelegate &m_delegate;
    std::map<SampleBufferType, ScreenAudioStreamOutput *> m_outputs;
    SerialQueue *m_queue = nullptr;
    bool m_isCapturing = false;
};

/// A capture service that does what the test says. Main thread.
class FakeScreenAudioCapture final : public ScreenAudioCapture
{
public:
    bool isGranted = true;
    std::vector<CaptureDisplay> displays {{QStringLiteral("speakers"), QStringLiteral("Speakers")},
        {QStringLiteral("headset"), QStringLiteral("Headset")}};
    std::optional<QString> contentFailure;
    std::function<void(FakeScreenAudioStream &)> onMakeStream; ///< prepares every new stream

    bool preflightAccess() override;
    void requestAccess() override { ++m_requests; }
    QCoro::Task<ShareableContent> shareableContent(
        bool excludingDesktopWindows, bool onScreenWindowsOnly) override;
    std::unique_ptr<ScreenAudioStream> makeStream(const CaptureContentFilter &filter,
        const ScreenStreamConfiguration &configuration, ScreenAudioStreamDelegate &delegate) override;

    int checks() const { return m_checks; }
    int requests() const { return m_requests; }
    /// What was done with streams, such as "make speakers", "add screen", "start".
    const QStringList &steps() const { return m_log->steps; }
    const std::optional<ScreenStreamConfiguration> &configuration() const { return m_configuration; }
    /// The newest stream; it must still live.
    FakeScreenAudioStream &stream() const { return *m_stream; }

private:
    int m_checks = 0;
    int m_requests = 0;
    std::shared_ptr<ScreenAudioCaptureLog> m_log = std::make_shared<ScreenAudioCaptureLog>();
    std::optional<ScreenStreamConfiguration> m_configuration;
    FakeScreenAudioStream *m_stream = nullptr;
};

} // namespace lumaphone::test
