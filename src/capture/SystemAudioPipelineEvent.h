#pragma once

#include "capture/SystemAudioSampleSummary.h"
#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace lumaphone {

namespace pipeline_event {

/// A buffer of sound was accepted.
struct AudioSample
{
    SystemAudioSampleSummary summary;

    bool operator==(const AudioSample &) const = default;
};

/// A text was recognised: trimmed, never empty; the language is never `automatic`.
struct Speech
{
    QString text;
    AppleSystemSpeechLanguage language;
    bool isFinal = false;

    bool operator==(const Speech &) const = default;
};

/// Recognition has fallen behind the sound by seconds, or has caught up again.
struct Pace
{
    bool isBehind = false;

    bool operator==(const Pace &) const = default;
};

/// The output that is captured has gone and is waited for, under its name for people; with none, sound flows
/// again.
struct Awaited
{
    std::optional<QString> output;

    bool operator==(const Awaited &) const = default;
};

/// The capture or the recognition ended by itself, with the reason for the user.
struct Failed
{
    QString message;

    bool operator==(const Failed &) const = default;
};

} // namespace pipeline_event

/// What a pipeline tells its owner.
using SystemAudioPipelineEvent = std::variant<pipeline_event::AudioSample, pipeline_event::Speech,
    pipeline_event::Pace, pipeline_event::Awaited, pipeline_event::Failed>;

/// Called on whatever thread an event arises, on several at a time. Must not block; the owner moves the work
/// to the main thread. It may be destroyed on any thread.
using SystemAudioPipelineEventHandler = std::function<void(const SystemAudioPipelineEvent &)>;

} // namespace lumaphone
