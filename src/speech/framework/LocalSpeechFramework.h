#pragma once

#include "base/MainQueue.h"
#include "speech/framework/SpeechEngine.h"

#include <map>

namespace lumaphone {

/// Speech recognition by the engines on this machine; EngineChoice says which one serves which locales.
/// Recognition stays on the machine, so it needs no one's permission.
class LocalSpeechFramework final : public SpeechFramework
{
public:
    /// `engines` in the order of preference.
    LocalSpeechFramework(
        std::vector<std::shared_ptr<SpeechEngine>> engines, std::shared_ptr<MainQueue> mainQueue);

    SpeechAuthorization authorizationStatus() override { return SpeechAuthorization::authorized; }
    QCoro::Task<SpeechAuthorization> requestAuthorization() override;
    QCoro::Task<std::optional<QString>> supportedLocale(QString localeIdentifier) override;
    QCoro::Task<> reserve(QString localeIdentifier) override;
    QCoro::Task<> release(QString localeIdentifier) override;
    std::shared_ptr<SpeechModule> makeTranscriber(
        const QString &localeIdentifier, const SpeechModuleOptions &options) override;
    /// The modules must be this framework's own.
    std::shared_ptr<SpeechAnalyzer> makeAnalyzer(std::vector<std::shared_ptr<SpeechModule>> modules) override;

    /// Whether a locale's model is on this machine now, so that it can be reserved.
    bool isInstalled(const QString &localeIdentifier) const;
    /// What the user calls the recogniser that serves a locale; empty if none does.
    QString recogniserName(const QString &localeIdentifier) const;
    /// How the user gets a recogniser for a locale for which there is none; empty if nobody knows.
    QString installationHint(const QString &localeIdentifier) const;
    /// How many reservations of a locale have not been released.
    int reservations(const QString &localeIdentifier) const;

private:
    /// The engines for locales that are recognised together; null where none has a model.
    std::vector<std::shared_ptr<SpeechEngine>> enginesFor(const std::vector<QString> &locales) const;
    QString missingModelText(const QString &localeIdentifier) const;

    const std::vector<std::shared_ptr<SpeechEngine>> m_engines;
    const std::shared_ptr<MainQueue> m_mainQueue;
    std::map<QString, int> m_reservations;
};

} // namespace lumaphone
