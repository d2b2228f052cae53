#pragma once

#include "speech/framework/SpeechEngine.h"
#include "speech/hosted/HostedRecognizer.h"

#include <functional>

namespace lumaphone {

/// Recognises one or several languages with networks that run in a process of their own.
class HostedSpeechEngine final : public SpeechEngine
{
public:
    /// What is installed at the moment, or a sentence for the user: what is missing and how to install it.
    using Installation = std::variant<SpeechInstallation, QString>;
    /// Any thread.
    using Locator = std::function<Installation()>;

    /// `languages`: those that the networks know.
    HostedSpeechEngine(QString name, std::vector<SpokenLanguage> languages, Locator locate);

    QString name() const override { return m_name; }
    std::vector<QString> installedLocales() const override;
    std::optional<QString> installationHint(const QString &localeIdentifier) const override;
    std::vector<std::shared_ptr<StreamingRecognizer>> makeRecognizers(
        const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const override;

private:
    bool knows(SpokenLanguage language) const;

    const QString m_name;
    const std::vector<SpokenLanguage> m_languages;
    const Locator m_locate;
};

} // namespace lumaphone
