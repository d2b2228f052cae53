#pragma once

#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "capture/AppleSystemSpeechTranscriberEntry.h"
#include "capture/StartAttempts.h"
#include "platform/SpeechFramework.h"

#include <QCoroTask>

#include <memory>
#include <optional>
#include <vector>

namespace lumaphone {

/// An analyzer that has loaded, with its modules.
struct PreparedSpeech
{
    std::vector<AppleSystemSpeechTranscriberEntry> entries;
    std::shared_ptr<SpeechAnalyzer> analyzer;
};

/// Makes ready what a session recognises with, and holds the framework's reservations for it. Part of the
/// transcriber; main thread, but for letGo().
class SpeechPreparation
{
public:
    /// Unwinds an attempt that was overtaken by another one or by a stop.
    struct Superseded
    {
    };

    SpeechPreparation(std::shared_ptr<SpeechFramework> framework, std::shared_ptr<MainQueue> mainQueue,
        std::shared_ptr<DetachedTasks> detachedTasks);

    /// A start or a stop: attempts before it are superseded.
    int begin() { return m_attempts.begin(); }
    void throwIfSuperseded(int attempt) const;

    QCoro::Task<bool> requestAuthorization();
    /// Several languages are tried together, then one by one in their order. Throws
    /// AppleSystemSpeechTranscriberError, and Superseded. What a failed try has reserved is released.
    QCoro::Task<PreparedSpeech> prepareTranscribers(
        std::vector<AppleSystemSpeechLanguage> languages, int attempt);
    /// Releases the reservations, and lets go what still loads, behind the call. Any thread on which nobody
    /// else uses the transcriber.
    void letGo();

private:
    using Entry = AppleSystemSpeechTranscriberEntry;
    enum class LanguageFallback { notAllowed, allowed };

    QCoro::Task<std::optional<PreparedSpeech>> tryToPrepare(
        std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt);
    QCoro::Task<PreparedSpeech> prepare(
        std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt);
    QCoro::Task<std::vector<Entry>> makeTranscriberEntries(
        std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt);
    QCoro::Task<> reserve(QString locale, int attempt);
    QCoro::Task<std::shared_ptr<SpeechAnalyzer>> prepareAnalyzer(std::vector<Entry> entries, int attempt);
    void releaseReservations(std::vector<QString> locales);

    const std::shared_ptr<SpeechFramework> m_framework;
    const std::shared_ptr<MainQueue> m_mainQueue;
    const std::shared_ptr<DetachedTasks> m_detachedTasks;
    StartAttempts m_attempts;
    std::shared_ptr<SpeechAnalyzer> m_preparedAnalyzer; ///< while it loads
    std::vector<QString> m_reservedLocales;
};

} // namespace lumaphone
