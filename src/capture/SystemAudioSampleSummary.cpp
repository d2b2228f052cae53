#include "capture/SystemAudioSampleSummary.h"

#include "capture/SoundPeak.h"

#include <algorithm>
#include <cmath>

namespace lumaphone {

namespace {

bool isSilent(const AudioSampleBuffer &buffer)
{
    return buffer.frames > 0 && !buffer.planes.empty()
        && std::ranges::all_of(buffer.planes, [](std::span<const std::byte> plane) {
               return std::ranges::all_of(plane, [](std::byte byte) { return byte == std::byte {0}; });
           });
}

} // namespace

SystemAudioSampleSummary makeSummary(const AudioSampleBuffer &buffer, const QLocale &locale)
{
    const double duration = buffer.durationSeconds.value_or(0);
    const QString frames = QString::number(buffer.frames);
    const QString seconds = locale.toString(std::isfinite(duration) ? duration : 0.0, 'f', 3);
    if (!buffer.description) {
        return {QStringLiteral("%1 frames, duration %2s").arg(frames, seconds), isSilent(buffer),
            soundPeak(buffer)};
    }
    return {QStringLiteral("%1 frames, %2 Hz, %3 channel, duration %4s")
                .arg(frames, locale.toString(buffer.description->sampleRateHz, 'f', 0),
                    QString::number(buffer.description->channelsPerFrame), seconds),
        isSilent(buffer), soundPeak(buffer)};
}

} // namespace lumaphone
