#include "support/FakeScreenAudioCapture.h"

#include <thread>

namespace lumaphone::test {

namespace {

QString nameOf(SampleBufferType type)
{
    return type == SampleBufferType::Screen ? QStringLiteral("screen") : QStringLiteral("audio");
}

void throwIfSet(const std::optional<QString> &failure)
{
    if (failure) {
        throw CaptureServiceError(*failure);
    }
}

} // namespace

FakeScreenAudioStream::~FakeScreenAudioStream()
{
    m_log->steps.append(QStringLiteral("destroy"));
}

void FakeScreenAudioStream::addStreamOutput(
    ScreenAudioStreamOutput &output, SampleBufferType type, SerialQueue &queue)
{
    m_log->steps.append(QStringLiteral("add ") + nameOf(type));
    if (type == SampleBufferType::Audio) {
        throwIfSet(addAudioFailure);
    }
    m_outputs[type] = &output;
    m_queue = &queue;
}

void FakeScreenAudioStream::removeStreamOutput(ScreenAudioStreamOutput &, SampleBufferType type)
{
    m_log->steps.append(QStringLiteral("remove ") + nameOf(type));
    if (m_outputs.erase(type) == 0) {
        throw CaptureServiceError(QStringLiteral("no such output"));
    }
}

QCoro::Task<> FakeScreenAudioStream::startCapture()
{
    m_log->steps.append(QStringLiteral("start"));
    if (startGate) {
        co_await startGate->passage();
    }
    throwIfSet(startFailure);
    m_isCapturing = true;
}

QCoro::Task<> FakeScreenAudioStream::stopCapture()
{
    m_log->steps.append(QStringLiteral("stop"));
    m_isCapturing = false;
    throwIfSet(stopFailure);
    co_return;
}

void FakeScreenAudioStream::deliver(const AudioSampleBuffer &buffer, SampleBufferType type)
{
    ScreenAudioStreamOutput *const output = m_outputs.at(type);
    m_queue->post([output, &buffer, type] { output->didOutputSampleBuffer(buffer, type); });
    m_queue->drain();
}

void FakeScreenAudioStream::failBySelf(const QString &message)
{
    std::jthread([this, message] {
        m_delegate.didStopWithError(std::make_exception_ptr(CaptureServiceError(message)));
    }).join();
}

bool FakeScreenAudioCapture::preflightAccess()
{
    ++m_checks;
    return isGranted;
}

QCoro::Task<ShareableContent> FakeScreenAudioCapture::shareableContent(
    bool excludingDesktopWindows, bool onScreenWindowsOnly)
{
    m_log->steps.append(
        QStringLiteral("content %1 %2").arg(excludingDesktopWindows).arg(onScreenWindowsOnly));
    throwIfSet(contentFailure);
    co_return ShareableContent {displays};
}

std::unique_ptr<ScreenAudioStream> FakeScreenAudioCapture::makeStream(const CaptureContentFilter &filter,
    const ScreenStreamConfiguration &configuration, ScreenAudioStreamDelegate &delegate)
{
    m_log->steps.append(QStringLiteral("make ") + filter.display.id);
    m_configuration = configuration;
    auto stream = std::make_unique<FakeScreenAudioStream>(m_log, delegate);
    m_stream = stream.get();
    if (onMakeStream) {
        onMakeStream(*stream);
    }
    return stream;
}

} // namespace lumaphone::test
