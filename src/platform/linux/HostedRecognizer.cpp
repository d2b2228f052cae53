#include "platform/linux/HostedRecognizer.h"

#include "speech/RecognizedText.h"
#include "speech/Segmenter.h"

#include <QFile>

#include <algorithm>
#include <thread>

namespace lumaphone {

namespace {

// More help little, and the desktop has other things to do.
constexpr unsigned mostThreads = 2;

host::Configure configurationOf(
    const SpeechInstallation &installation, const std::vector<SpokenLanguage> &languages)
{
    host::Configure configuration;
    configuration.runtimeFolder = QFile::encodeName(installation.runtimeFolder).toStdString();
    configuration.voiceDetector = QFile::encodeName(installation.voiceDetector).toStdString();
    configuration.network = installation.network;
    configuration.volatileNetwork = installation.volatileNetwork;
    if (languages.size() == 1) {
        configuration.language = networkName(languages.front()).toStdString();
    }
    configuration.threads = std::clamp(std::thread::hardware_concurrency() / 2, 1U, mostThreads);
    return configuration;
}

} // namespace

HostedRecognizer::HostedRecognizer(const SpeechInstallation &installation,
    const std::vector<SpokenLanguage> &languages, RecognitionSink sink)
    : m_languages(languages)
    , m_sink(std::move(sink))
    , m_hasStreamingTexts(
          installation.volatileNetwork || installation.network.kind != host::NetworkKind::senseVoice)
    , m_arbiter(languages)
    , m_session(installation.hostProgram, configurationOf(installation, languages),
          [this](const host::Decoded &decoded) { heard(decoded); })
{
}

std::vector<QString> HostedRecognizer::localeIdentifiers() const
{
    std::vector<QString> locales;
    std::transform(m_languages.begin(), m_languages.end(), std::back_inserter(locales), &localeIdentifier);
    return locales;
}

void HostedRecognizer::load()
{
    if (std::find(m_languages.begin(), m_languages.end(), SpokenLanguage::mandarin) != m_languages.end()) {
        m_traditional.emplace();
    }
    m_session.start();
}

void HostedRecognizer::heard(const host::Decoded &decoded)
{
    const QString named = QString::fromStdString(decoded.language);
    if (!mayBeSpeech(QString::fromStdString(decoded.event), named)) {
        return;
    }
    const QString text = QString::fromStdString(decoded.text);
    const LanguageArbiter::Seconds speech {
        static_cast<double>(decoded.voicedSamples) / static_cast<double>(samplesPerSecond)};
    const auto language
        = m_arbiter.decide({decoded.start, speech, decoded.isFinal, spokenLanguageNamed(named), text});
    const auto shown = shownText(decoded);
    if (!language || !shown) {
        return;
    }
    QString clean = cleanRecognizedText(*shown, *language);
    if (clean.isEmpty()) {
        return;
    }
    if (*language == SpokenLanguage::mandarin) {
        clean = m_traditional->convert(clean);
    }
    m_sink(localeIdentifier(*language), {clean, decoded.isFinal});
}

std::optional<QString> HostedRecognizer::shownText(const host::Decoded &decoded)
{
    const QString text = QString::fromStdString(decoded.text);
    return decoded.isFinal || m_hasStreamingTexts ? text : m_stableText.decoded(decoded.start, text);
}

} // namespace lumaphone
