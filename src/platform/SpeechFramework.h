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

enum class SpeechAuthorization { NotDetermined, Denied, Restricted, Authorized };

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
    /// Throws what made the recogniser fail.
    virtual std::optional<SpeechResult> nextResult(const std::stop_token &stop) = 0;
};

using AnalyzerInputStream = AsyncStream<AnalyzerInput>;

/// Feeds one stream of sound to its modules. At the end of the input the modules give their last final
/// texts, and then their results end.
class SpeechAnalyzer
{
public:
    virtual ~SpeechAnalyzer() = default;
    /// Main thread: loads what the modules need, off the main thread. Throws SpeechFrameworkError.
    virtual QCoro::Task<> prepareToAnalyze(double sampleRateHz) = 0;
    /// A thread of the caller's: returns at the end of the input, after cancelAndFinishNow(), or when `stop`
    /// is requested. Throws SpeechFrameworkError. Copies the sound before it takes the next input, so that
    /// buffers can be reused behind it; waiting for a slow recogniser is the analyzer's own matter.
    virtual void start(AnalyzerInputStream &input, const std::stop_token &stop) = 0;
    /// Any thread: ends analysis at once. May wait for a recogniser to notice; results end without a last
    /// final text. Idempotent.
    virtual void cancelAndFinishNow() = 0;
    /// Any thread: how much sound it has taken that no recogniser has heard yet.
    virtual std::chrono::milliseconds waitingSound() const { return {}; }
};

/// On-device speech recognition. Main thread, unless said otherwise.
class SpeechFramework
{
public:
    virtual ~SpeechFramework() = default;
    virtual SpeechAuthorization authorizationStatus() = 0;
    virtual QCoro::Task<SpeechAuthorization> requestAuthorization() = 0;
    /// The identifier of the supported locale equivalent to `localeIdentifier` (such as "ja-JP"), or none.
    virtual QCoro::Task<std::optional<QString>> supportedLocale(QString localeIdentifier) = 0;
    /// Reserves the on-device model of a locale. Throws SpeechFrameworkError.
    virtual QCoro::Task<> reserve(QString localeIdentifier) = 0;
    /// Undoes a reservation.
    virtual QCoro::Task<> release(QString localeIdentifier) = 0;
    virtual std::shared_ptr<SpeechModule> makeTranscriber(
        const QString &localeIdentifier, const SpeechModuleOptions &options)
        = 0;
    virtual std::shared_ptr<SpeechAnalyzer> makeAnalyzer(std::vector<std::shared_ptr<SpeechModule>> modules)
        = 0;
};

} // namespace lumaphone
