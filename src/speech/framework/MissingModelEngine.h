#pragma once

#include "speech/framework/SpeechEngine.h"

namespace lumaphone {

/// Stands in where no engine has a model: its recognisers fail to load, with a given text.
class MissingModelEngine final : public SpeechEngine
{
public:
    explicit MissingModelEngine(QString description);

    QString name() const override { return {}; }
    std::vector<QString> installedLocales() const override { return {}; }
    std::optional<QString> installationHint(const QString &) const override { return std::nullopt; }
    std::vector<std::shared_ptr<StreamingRecognizer>> makeRecognizers(
        const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const override;

private:
    QString m_description;
};

} // namespace lumaphone
