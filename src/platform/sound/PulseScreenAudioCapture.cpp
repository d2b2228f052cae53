#include "platform/sound/PulseScreenAudioCapture.h"

#include "base/Completion.h"
#include "platform/sound/PulseConnection.h"
#include "platform/sound/PulseScreenAudioStream.h"
#include "platform/sound/SoundAccess.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

ShareableContent outputsOf(const PulseOptions &options)
{
    PulseConnection connection(options, {});
    const std::string defaultName = connection.defaultSinkName();
    std::vector<PulseSink> sinks = connection.sinks();
    std::stable_partition(
        sinks.begin(), sinks.end(), [&](const PulseSink &sink) { return sink.name == defaultName; });
    ShareableContent content;
    for (const PulseSink &sink : sinks) {
        content.displays.push_back(
            {QString::fromStdString(sink.name), QString::fromStdString(sink.description)});
    }
    return content;
}

} // namespace

PulseScreenAudioCapture::PulseScreenAudioCapture(std::shared_ptr<MainQueue> mainQueue, PulseOptions options)
    : m_mainQueue(std::move(mainQueue))
    , m_options(std::move(options))
{
}

bool PulseScreenAudioCapture::preflightAccess()
{
    return mayUseSound(m_options);
}

QCoro::Task<ShareableContent> PulseScreenAudioCapture::shareableContent(bool, bool)
{
    co_return co_await runInBackground(
        m_mainQueue, "sound-outputs", [options = m_options] { return outputsOf(options); });
}

std::unique_ptr<ScreenAudioStream> PulseScreenAudioCapture::makeStream(const CaptureContentFilter &filter,
    const ScreenStreamConfiguration &configuration, ScreenAudioStreamDelegate &delegate)
{
    return std::make_unique<PulseScreenAudioStream>(
        m_mainQueue, m_options, filter.display, configuration, delegate);
}

} // namespace lumaphone
