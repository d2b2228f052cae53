#pragma once

#include "platform/SpeechFramework.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace lumaphone {

/// Takes a text recognised in one locale: a volatile one replaces the volatile one before it, a final one
/// closes its utterance. May be called on any thread, but by one recogniser never on two at a time.
using RecognitionSink = std::function<void(const QString &localeIdentifier, SpeechResult result)>;

/// A streaming recogniser. Most serve one locale; one whose decoder tells languages apart by itself serves
/// several locales with a single decode. Its texts go to the sink that its engine was given for it.
/// What its operations throw ends the recogniser; the text is shown to the user.
class StreamingRecognizer
{
public:
    virtual ~StreamingRecognizer() = default;
    /// The locales whose texts this recogniser gives. Any thread.
    virtual std::vector<QString> localeIdentifiers() const = 0;
    /// Loads the model. Any thread, once, before the first sample. Gives no texts.
    virtual void load() = 0;
    /// Takes the next samples, 16 kHz mono, in pieces of any size; may decode before it returns. Like
    /// finish(), on one thread of the caller's.
    virtual void accept(std::span<const std::int16_t> samples) = 0;
    /// No more samples follow. Gives the last final texts, none after it has returned.
    virtual void finish() = 0;
    /// Any thread, at any time: makes the running call and every later one return soon. Texts that still come
    /// are ignored. Idempotent.
    virtual void cancel() noexcept = 0;
};

} // namespace lumaphone
