#pragma once

#include "platform/linux/HostedRecognizer.h"
#include "platform/linux/SpeechEngine.h"

#include <functional>

namespace lumaphone {

/// Recognises Japanese, English, Korean and Mandarin with networks that run in a process of their own.
class HostedSpeechEngine final : public SpeechEngine
{
public:
    /// What is installed at the moment, or a sentence for the user: what is missing and how to install it.
    using Installation = std::variant<SpeechInstallation, QString>;
    /// Any thread.
    using Locator = std::function<Installation()>;

    explicit HostedSpeechEngine(Locator locate);

    std::vector<QString> installedLocales() const override;
    std::optional<QString> installationHint(const QString &localeIdentifier) const override;
    std::vector<std::shared_ptr<StreamingRecognizer>> makeRecognizers(
        const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const override;

private:
    const Locator m_locate;
};

} // namespace lumaphone
