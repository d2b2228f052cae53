#include "speech/framework/ScriptedSpeechEngine.h"

#include <algorithm>

namespace lumaphone::test {

namespace {

class ScriptedRecognizer final : public StreamingRecognizer
{
public:
    ScriptedRecognizer(RecognizerScript script, RecognitionSink sink)
        : m_script(std::move(script))
        , m_sink(std::move(sink))
    {
    }

    std::vector<QString> localeIdentifiers() const override { return m_script.localeIdentifiers; }
    void load() override
    {
        if (m_script.load) {
            m_script.load();
        }
    }
    void accept(std::span<const std::int16_t> samples) override
    {
        if (m_script.accept) {
            m_script.accept(samples, m_sink);
        }
    }
    void finish() override
    {
        if (m_script.finish) {
            m_script.finish(m_sink);
        }
    }
    void cancel() noexcept override
    {
        if (m_script.cancel) {
            m_script.cancel();
        }
    }

private:
    RecognizerScript m_script;
    RecognitionSink m_sink;
};

} // namespace

ScriptedSpeechEngine::ScriptedSpeechEngine(std::vector<RecognizerScript> scripts)
    : m_scripts(std::move(scripts))
{
}

std::vector<QString> ScriptedSpeechEngine::installedLocales() const
{
    std::vector<QString> locales;
    for (const RecognizerScript &script : m_scripts) {
        locales.insert(locales.end(), script.localeIdentifiers.begin(), script.localeIdentifiers.end());
    }
    return locales;
}

std::optional<QString> ScriptedSpeechEngine::installationHint(const QString &) const
{
    return std::nullopt;
}

std::vector<std::shared_ptr<StreamingRecognizer>> ScriptedSpeechEngine::makeRecognizers(
    const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const
{
    std::vector<std::shared_ptr<StreamingRecognizer>> recognizers;
    for (RecognizerScript script : m_scripts) {
        std::erase_if(script.localeIdentifiers, [&localeIdentifiers](const QString &locale) {
            return std::find(localeIdentifiers.begin(), localeIdentifiers.end(), locale)
                == localeIdentifiers.end();
        });
        if (!script.localeIdentifiers.empty()) {
            recognizers.push_back(std::make_shared<ScriptedRecognizer>(std::move(script), sink));
        }
    }
    return recognizers;
}

} // namespace lumaphone::test
