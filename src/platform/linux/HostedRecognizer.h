#pragma once

#include "platform/linux/SpeechHostSession.h"
#include "platform/linux/StreamingRecognizer.h"
#include "speech/LanguageArbiter.h"
#include "speech/StableText.h"
#include "speech/TaiwanTraditional.h"

namespace lumaphone {

/// What a speech host needs to recognise.
struct SpeechInstallation
{
    QString hostProgram;
    QString runtimeFolder;
    QString voiceDetector;
    host::Network network;
    std::optional<host::Network> volatileNetwork;
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
    void cancel() noexcept override { m_session.cancel(); }

    /// The host's process; -1 while there is none. Any thread.
    pid_t hostProcessId() const { return m_session.processId(); }

private:
    void heard(const host::Decoded &decoded);
    /// None: a volatile text that is not to be shown.
    std::optional<QString> shownText(const host::Decoded &decoded);

    const std::vector<SpokenLanguage> m_languages;
    const RecognitionSink m_sink;
    const bool m_hasStreamingTexts; ///< volatile ones only grow
    LanguageArbiter m_arbiter;
    StableText m_stableText;
    std::optional<TaiwanTraditional> m_traditional;
    SpeechHostSession m_session;
};

} // namespace lumaphone
