#include "speech/hosted/HostedRecognizer.h"

#include "language/LanguageTable.h"
#include "speech/framework/RecognizedText.h"
#include "speech/protocol/SampleRate.h"

#include <QFile>

#include <algorithm>
#include <thread>

namespace lumaphone {

namespace {

// More help little, and the desktop has other things to do.
constexpr unsigned mostThreads = 2;

/// Networks that hear sound as it comes only add to their texts; others decode a segment from its start each
/// time.
GrowingText::Agreement agreementFor(const SpeechInstallation &installation)
{
    const host::NetworkKind kind = installation.volatileNetwork.value_or(installation.network).kind;
    switch (kind) {
    case host::NetworkKind::senseVoice:
    case host::NetworkKind::moonshine:
        return {.onFirstWord = 2, .onOtherWords = 2};
    case host::NetworkKind::streamingCtc:
    case host::NetworkKind::streamingTransducer:
        break;
    }
    return {.onFirstWord = 1, .onOtherWords = 1};
}

host::Configure configurationOf(
    const SpeechInstallation &installation, const std::vector<SpokenLanguage> &languages)
{
    host::Configure configuration;
    configuration.runtimeFolder = QFile::encodeName(installation.runtimeFolder).toStdString();
    configuration.voiceDetector = QFile::encodeName(installation.voiceDetector).toStdString();
    configuration.voiceThreshold = installation.voiceThreshold;
    configuration.network = installation.network;
    configuration.volatileNetwork = installation.volatileNetwork;
    if (languages.size() == 1) {
        configuration.language = languageCode(languages.front()).toStdString();
    }
    configuration.threads = std::clamp(std::thread::hardware_concurrency() / 2, 1U, mostThreads);
    return configuration;
}

} // namespace

HostedRecognizer::HostedRecognizer(const SpeechInstallation &installation,
    const std::vector<SpokenLanguage> &languages, RecognitionSink sink)
    : m_languages(languages)
    , m_sink(std::move(sink))
    , m_demandIntact(installation.demandIntact)
    , m_repair(installation.repair)
    , m_arbiter(languages)
    , m_growing(agreementFor(installation))
    , m_shownLanguage(languages.front())
    , m_session(
          installation.hostProgram, configurationOf(installation, languages),
          [this](const host::Decoded &decoded) { heard(decoded); }, installation.repair)
{
}

std::vector<QString> HostedRecognizer::localeIdentifiers() const
{
    std::vector<QString> locales;
    std::transform(m_languages.begin(), m_languages.end(), std::back_inserter(locales),
        [](SpokenLanguage language) { return localeIdentifier(language); });
    return locales;
}

void HostedRecognizer::load()
{
    for (const SpokenLanguage language : m_languages) {
        m_wordings.emplace(language, languageRow(language).networksWrite);
    }
    demandIntactFiles();
    m_session.start();
}

void HostedRecognizer::demandIntactFiles() const
{
    if (!m_demandIntact) {
        return;
    }
    try {
        m_demandIntact(m_cancelled.get_token());
    } catch (const std::exception &error) {
        throw SpeechFrameworkError(localizedDescription(error) + m_repair);
    }
}

void HostedRecognizer::cancel() noexcept
{
    m_cancelled.request_stop();
    m_session.cancel();
}

void HostedRecognizer::heard(const host::Decoded &decoded)
{
    if (m_segment != decoded.start) {
        m_segment = decoded.start;
        m_growing.forget();
    }
    const LanguageArbiter::Seconds speech {
        static_cast<double>(decoded.voicedSamples) / static_cast<double>(samplesPerSecond)};
    const QString named = QString::fromStdString(decoded.language);
    const QString text = QString::fromStdString(decoded.text);
    const auto language
        = m_arbiter.decide({decoded.start, speech, decoded.isFinal, spokenLanguageNamed(named), text});
    const bool isSpeech = mayBeSpeech(QString::fromStdString(decoded.event), named);
    if (!language && !decoded.isFinal) {
        m_growing.listen(text);
        return;
    }
    const QString believed
        = language && isSpeech ? believedText(text, *language, speech, decoded) : QString();
    m_shownLanguage = language.value_or(m_shownLanguage);
    show(decoded.isFinal ? m_growing.concluded(believed) : m_growing.heard(believed), decoded.isFinal);
}

/// Empty where the text cannot be what somebody said.
QString HostedRecognizer::believedText(const QString &text, SpokenLanguage language,
    LanguageArbiter::Seconds speech, const host::Decoded &decoded) const
{
    const QString clean = withoutRepeatedTail(cleanRecognizedText(text, language));
    if (!canBeSaid(clean, speech)) {
        return {};
    }
    return writtenAsPart(m_wordings.at(language).rewrite(clean), {decoded.continuesSpeech, decoded.isCut});
}

void HostedRecognizer::show(const QStringList &texts, bool endsWithFinal)
{
    for (qsizetype i = 0; i < texts.size(); ++i) {
        m_sink(localeIdentifier(m_shownLanguage), {texts[i], endsWithFinal && i + 1 == texts.size()});
    }
}

} // namespace lumaphone
