#include "speech/framework/MissingModelEngine.h"

namespace lumaphone {

namespace {

class MissingModelRecognizer final : public StreamingRecognizer
{
public:
    MissingModelRecognizer(QString localeIdentifier, QString description)
        : m_localeIdentifier(std::move(localeIdentifier))
        , m_description(std::move(description))
    {
    }

    std::vector<QString> localeIdentifiers() const override { return {m_localeIdentifier}; }
    void load() override { throw SpeechFrameworkError(m_description); }
    void accept(std::span<const std::int16_t>) override { }
    void finish() override { }
    void cancel() noexcept override { }

private:
    const QString m_localeIdentifier;
    const QString m_description;
};

} // namespace

MissingModelEngine::MissingModelEngine(QString description)
    : m_description(std::move(description))
{
}

std::vector<std::shared_ptr<StreamingRecognizer>> MissingModelEngine::makeRecognizers(
    const std::vector<QString> &localeIdentifiers, RecognitionSink) const
{
    std::vector<std::shared_ptr<StreamingRecognizer>> recognizers;
    recognizers.reserve(localeIdentifiers.size());
    for (const QString &locale : localeIdentifiers) {
        recognizers.push_back(std::make_shared<MissingModelRecognizer>(locale, m_description));
    }
    return recognizers;
}

} // namespace lumaphone
