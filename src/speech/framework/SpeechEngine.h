#pragma once

#include "speech/framework/StreamingRecognizer.h"

#include <memory>
#include <optional>

namespace lumaphone {

/// One way of recognising speech: knows which of its models are installed and makes recognisers. Any thread;
/// only makeRecognizers() throws.
class SpeechEngine
{
public:
    virtual ~SpeechEngine() = default;
    /// What the user calls it.
    virtual QString name() const = 0;
    /// The locales, such as "en-US", whose models are on this machine now.
    virtual std::vector<QString> installedLocales() const = 0;
    /// A sentence for the user: how to install the model of a locale. None if this engine has none for it.
    virtual std::optional<QString> installationHint(const QString &localeIdentifier) const = 0;
    /// Recognisers that together serve exactly these locales, each locale by one recogniser. Nothing is
    /// loaded yet. All of them give their texts to `sink`. What it throws is shown to the user.
    virtual std::vector<std::shared_ptr<StreamingRecognizer>> makeRecognizers(
        const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const = 0;
};

} // namespace lumaphone
