#pragma once

#include "base/AsyncStream.h"
#include "base/LocalizedError.h"
#include "platform/PcmBuffer.h"

#include <QCoroTask>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace lumaphone {

enum class SpeechAuthorization { notDetermined, denied, restricted, authorized };

/// One recognised text of one module.
struct SpeechResult
{
    QString text;
    bool isFinal = false;
};

/// An error of the speech framework or of an engine behind it.
class SpeechFrameworkError : public PlatformError
{
public:
    using PlatformError::PlatformError;
};

struct SpeechModuleOptions
{
    bool reportsVolatileResults = false;
    bool reportsFastResults = false;

    bool operator==(const SpeechModuleOptions &) const = default;
};

/// The recogniser of one locale. Its results are read by one thread.
class SpeechModule
{
public:
    virtual ~SpeechModule() = default;
    /// Waits for the next result. None when the analysis has ended or `stop` is requested.
    /// Throws what made the recogniser fail. Afterwards there are no more results.
    virtual std::optional<SpeechResult> nextResult(const std::stop_token &stop) = 0;
};

using AnalyzerInputStream = AsyncStream<AnalyzerInput>;

/// Feeds one stream of sound to its modules. At the end of the input the modules give their last final
/// texts, and then their results end.
class SpeechAnalyzer
{
public:
    virtual ~SpeechAnalyzer() = default;
    /// Main thread, once and first: loads what the modules need, off the main thread. Throws
    /// SpeechFrameworkError.
    virtual QCoro::Task<> prepareToAnalyze(double sampleRateHz) = 0;
    /// A thread of the caller's: returns at the end of the input, after cancelAndFinishNow(), or when `stop`
    /// is requested. Throws SpeechFrameworkError. Copies the sound before it takes the next input, so that
    /// buffers can be reused behind it; waiting for a slow recogniser is the analyzer's own matter.
    virtual void start(AnalyzerInputStream &input, const std::stop_token &stop) = 0;
    /// Any thread: ends analysis at once and may wait for a recogniser to notice. Afterwards the modules get
    /// no result any more, not even a last final text. Throws nothing. Idempotent.
    virtual void cancelAndFinishNow() = 0;
    /// Any thread: how much sound it has taken that no recogniser has heard yet.
    virtual std::chrono::milliseconds waitingSound() const { return {}; }
};

/// On-device speech recognition. Main thread. Modules and analyzers may outlive it.
class SpeechFramework
{
public:
    virtual ~SpeechFramework() = default;
    /// Whether speech may be recognised, without asking anybody. Throws nothing.
    virtual SpeechAuthorization authorizationStatus() = 0;
    /// Asks the user and returns the answer. Throws nothing.
    virtual QCoro::Task<SpeechAuthorization> requestAuthorization() = 0;
    /// The identifier of the supported locale equivalent to `localeIdentifier` (such as "ja-JP"), or none.
    /// Throws nothing.
    virtual QCoro::Task<std::optional<QString>> supportedLocale(QString localeIdentifier) = 0;
    /// Reserves the on-device model of a locale. Throws SpeechFrameworkError.
    virtual QCoro::Task<> reserve(QString localeIdentifier) = 0;
    /// Undoes a reservation. Throws nothing.
    virtual QCoro::Task<> release(QString localeIdentifier) = 0;
    /// The recogniser of a locale, which loads nothing yet. Never null. Throws SpeechFrameworkError.
    virtual std::shared_ptr<SpeechModule> makeTranscriber(
        const QString &localeIdentifier, const SpeechModuleOptions &options)
        = 0;
    /// Takes modules of this framework that no other analyzer has. Never null. Throws SpeechFrameworkError.
    virtual std::shared_ptr<SpeechAnalyzer> makeAnalyzer(std::vector<std::shared_ptr<SpeechModule>> modules)
        = 0;
};

} // namespace lumaphone
