#pragma once

#include "platform/SpeechFramework.h"

namespace lumaphone {

/// The results of one locale, given by whichever thread recognises and read by another.
class LocalSpeechModule final : public SpeechModule
{
public:
    LocalSpeechModule(QString localeIdentifier, const SpeechModuleOptions &options);

    const QString &localeIdentifier() const { return m_localeIdentifier; }

    std::optional<SpeechResult> nextResult(const std::stop_token &stop) override;

    // Any thread.
    /// Appends a result; a volatile one only if they are reported.
    void give(SpeechResult result);
    /// Ends the results. What was given is still read.
    void finish();
    /// Ends the results with an error.
    void fail(const QString &description);

private:
    const QString m_localeIdentifier;
    const SpeechModuleOptions m_options;
    AsyncStream<SpeechResult> m_results;
};

} // namespace lumaphone
