#pragma once

#include "platform/AudioSampleBuffer.h"

#include <QLocale>
#include <QString>

namespace lumaphone {

/// What one captured buffer held, in one line for people.
struct SystemAudioSampleSummary
{
    QString detail;
    bool isSilent = false; ///< it held samples, and all of them were zero
    double peak = 0; ///< of its loudest sample, from 0 to 1

    bool operator==(const SystemAudioSampleSummary &) const = default;
};

/// Such as "1600 frames, 16000 Hz, 1 channel, duration 0.100s"; without rate and channels when the buffer has
/// no description. Rate and duration are written as `locale` writes numbers; an unknown duration counts as 0.
SystemAudioSampleSummary makeSummary(const AudioSampleBuffer &buffer, const QLocale &locale);

} // namespace lumaphone
