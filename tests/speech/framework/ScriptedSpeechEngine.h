#pragma once

#include "speech/framework/SpeechEngine.h"

namespace lumaphone::test {

/// What one recogniser does. Each part runs where the recogniser is called; a missing part does nothing.
struct RecognizerScript
{
    std::vector<QString> localeIdentifiers;
    std::function<void()> load;
    std::function<void(std::span<const std::int16_t>, const RecognitionSink &)> accept;
    std::function<void(const RecognitionSink &)> finish;
    std::function<void()> cancel;
};

/// An engine whose recognisers follow scripts, one recogniser for each.
class ScriptedSpeechEngine final : public SpeechEngine
{
public:
    explicit ScriptedSpeechEngine(std::vector<RecognizerScript> scripts);

    QString name() const override { return QStringLiteral("scripted"); }
    std::vector<QString> installedLocales() const override;
    std::optional<QString> installationHint(const QString &localeIdentifier) const override;
    std::vector<std::shared_ptr<StreamingRecognizer>> makeRecognizers(
        const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const override;

private:
    std::vector<RecognizerScript> m_scripts;
};

} // namespace lumaphone::test
