#pragma once

#include "language/TaiwanWording.h"
#include "speech/framework/GrowingText.h"
#include "speech/framework/StreamingRecognizer.h"
#include "speech/hosted/LanguageArbiter.h"
#include "speech/hosted/SpeechHostSession.h"

#include <map>

namespace lumaphone {

/// What a speech host needs to recognise.
struct SpeechInstallation
{
    QString hostProgram;
    QString runtimeFolder;
    QString voiceDetector;
    host::Network network;
    std::optional<host::Network> volatileNetwork = {};
    /// Throws where a file is not the one it should be, before the library sees it. None: nothing is known.
    std::function<void(const std::stop_token &)> demandIntact = {};
    /// What the user can do about files that are damaged.
    QString repair = SpeechHostSession::reinstallTheModel();
    /// How sure the voice detector must be of speech, in thousandths.
    std::uint32_t voiceThreshold = 500;
};

/// Recognises several languages with one decode, in a process of its own: a single language with a network
/// bound to it, several with one that tells them apart.
class HostedRecognizer final : public StreamingRecognizer
{
public:
    HostedRecognizer(const SpeechInstallation &installation, const std::vector<SpokenLanguage> &languages,
        RecognitionSink sink);

    std::vector<QString> localeIdentifiers() const override;
    void load() override;
    void accept(std::span<const std::int16_t> samples) override { m_session.append(samples); }
    void finish() override { m_session.finish(); }
    void cancel() noexcept override;

    /// The host's process; -1 while there is none. Any thread.
    pid_t hostProcessId() const { return m_session.processId(); }

private:
    void demandIntactFiles() const;
    void heard(const host::Decoded &decoded);
    QString believedText(const QString &text, SpokenLanguage language, LanguageArbiter::Seconds speech,
        const host::Decoded &decoded) const;
    void show(const QStringList &texts, bool endsWithFinal);

    const std::vector<SpokenLanguage> m_languages;
    const RecognitionSink m_sink;
    const std::function<void(const std::stop_token &)> m_demandIntact;
    const QString m_repair;
    std::stop_source m_cancelled;
    LanguageArbiter m_arbiter;
    std::optional<std::int64_t> m_segment; ///< under way
    GrowingText m_growing;
    SpokenLanguage m_shownLanguage;
    std::map<SpokenLanguage, TaiwanWording> m_wordings; ///< of each language, once loaded
    SpeechHostSession m_session;
};

} // namespace lumaphone
