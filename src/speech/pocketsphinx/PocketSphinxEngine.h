#pragma once

#include "speech/framework/SpeechEngine.h"

namespace lumaphone {

/// PocketSphinx with its model of US English.
class PocketSphinxEngine final : public SpeechEngine
{
public:
    /// With the model of the system's package.
    PocketSphinxEngine();
    /// `modelFolder` is laid out as the package's "en-us" folder.
    explicit PocketSphinxEngine(QString modelFolder);

    QString name() const override { return QStringLiteral("PocketSphinx（後備，錯字較多）"); }
    std::vector<QString> installedLocales() const override;
    std::optional<QString> installationHint(const QString &localeIdentifier) const override;
    std::vector<std::shared_ptr<StreamingRecognizer>> makeRecognizers(
        const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const override;

private:
    QString m_modelFolder;
};

} // namespace lumaphone
