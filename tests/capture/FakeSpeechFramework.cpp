#include "capture/FakeSpeechFramework.h"

#include <algorithm>

namespace lumaphone::test {

void FakeSpeechModule::fail(const QString &message)
{
    m_results.fail(std::make_exception_ptr(SpeechFrameworkError(message)));
}

void FakeSpeechModule::setLastText(const QString &text)
{
    const std::lock_guard lock(m_mutex);
    m_lastText = text;
}

void FakeSpeechModule::finishWithLastText()
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_lastText.isEmpty()) {
            m_results.yield({m_lastText, true});
        }
    }
    m_results.finish();
}

QCoro::Task<> FakeSpeechAnalyzer::prepareToAnalyze(double sampleRateHz)
{
    m_preparedRateHz = sampleRateHz;
    co_await m_preparationGate.passage();
    if (m_preparationFailure) {
        throw SpeechFrameworkError(*m_preparationFailure);
    }
    co_return;
}

void FakeSpeechAnalyzer::start(AnalyzerInputStream &input, const std::stop_token &stop)
{
    const std::stop_callback stopped(stop, [this] { m_failing.request_stop(); });
    const std::stop_token waiting = m_failing.get_token();
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, waiting, [this] { return !m_isHeld; });
    }
    while (const auto next = input.next(waiting)) {
        take(*next);
    }
    throwIfFailed();
    if (stop.stop_requested() || isCancelled()) {
        return;
    }
    for (const auto &module : m_modules) {
        module->finishWithLastText();
    }
    const std::lock_guard lock(m_mutex);
    m_hasEnded = true;
}

void FakeSpeechAnalyzer::cancelAndFinishNow()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isCancelled = true;
    }
    m_failing.request_stop();
    for (const auto &module : m_modules) {
        module->end();
    }
}

void FakeSpeechAnalyzer::release()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isHeld = false;
    }
    m_changed.notify_all();
}

void FakeSpeechAnalyzer::fail(const QString &message)
{
    {
        const std::lock_guard lock(m_mutex);
        m_failure = message;
    }
    m_failing.request_stop();
}

int FakeSpeechAnalyzer::inputs() const
{
    const std::lock_guard lock(m_mutex);
    return m_inputs;
}

std::vector<std::int16_t> FakeSpeechAnalyzer::samples() const
{
    const std::lock_guard lock(m_mutex);
    return m_samples;
}

std::vector<const PcmBuffer *> FakeSpeechAnalyzer::buffers() const
{
    const std::lock_guard lock(m_mutex);
    return m_buffers;
}

bool FakeSpeechAnalyzer::isCancelled() const
{
    const std::lock_guard lock(m_mutex);
    return m_isCancelled;
}

bool FakeSpeechAnalyzer::hasEnded() const
{
    const std::lock_guard lock(m_mutex);
    return m_hasEnded;
}

void FakeSpeechAnalyzer::take(const AnalyzerInput &input)
{
    const std::lock_guard lock(m_mutex);
    ++m_inputs;
    if (m_keepsSamples) {
        const auto samples = input.buffer->samples();
        m_samples.insert(m_samples.end(), samples.begin(), samples.end());
        m_buffers.push_back(input.buffer.get());
    }
}

void FakeSpeechAnalyzer::throwIfFailed() const
{
    const std::lock_guard lock(m_mutex);
    if (m_failure) {
        throw SpeechFrameworkError(*m_failure);
    }
}

void FakeSpeechFramework::supportOnly(const QStringList &locales)
{
    std::erase_if(supported, [&locales](const auto &entry) { return !locales.contains(entry.first); });
}

QCoro::Task<SpeechAuthorization> FakeSpeechFramework::requestAuthorization()
{
    ++m_authorizationRequests;
    co_await authorizationGate.passage();
    authorization = answer;
    co_return answer;
}

QCoro::Task<std::optional<QString>> FakeSpeechFramework::supportedLocale(QString localeIdentifier)
{
    const auto found = supported.find(localeIdentifier);
    co_return found == supported.end() ? std::optional<QString>() : std::optional(found->second);
}

QCoro::Task<> FakeSpeechFramework::reserve(QString localeIdentifier)
{
    m_reservationLog.append(QStringLiteral("reserve ") + localeIdentifier);
    co_await reservationGate.passage();
    const auto failure = reservationFailures.find(localeIdentifier);
    if (failure != reservationFailures.end()) {
        throw SpeechFrameworkError(failure->second);
    }
    m_reserved.append(localeIdentifier);
}

QCoro::Task<> FakeSpeechFramework::release(QString localeIdentifier)
{
    m_reservationLog.append(QStringLiteral("release ") + localeIdentifier);
    if (!m_reserved.removeOne(localeIdentifier)) {
        qFatal("FakeSpeechFramework: %s was not reserved", qUtf8Printable(localeIdentifier));
    }
    co_return;
}

std::shared_ptr<SpeechModule> FakeSpeechFramework::makeTranscriber(
    const QString &localeIdentifier, const SpeechModuleOptions &options)
{
    return std::make_shared<FakeSpeechModule>(localeIdentifier, options);
}

std::shared_ptr<SpeechAnalyzer> FakeSpeechFramework::makeAnalyzer(
    std::vector<std::shared_ptr<SpeechModule>> modules)
{
    std::vector<std::shared_ptr<FakeSpeechModule>> fakes;
    QStringList locales;
    for (const auto &module : modules) {
        fakes.push_back(std::static_pointer_cast<FakeSpeechModule>(module));
        locales.append(fakes.back()->locale());
    }
    const auto failure = preparationFailures.find(locales);
    m_analyzers.push_back(std::make_shared<FakeSpeechAnalyzer>(std::move(fakes),
        failure == preparationFailures.end() ? std::nullopt : std::optional(failure->second), preparationGate,
        holdsAnalyzers, keepsSamples));
    return m_analyzers.back();
}

QStringList FakeSpeechFramework::reserved() const
{
    QStringList sorted = m_reserved;
    sorted.sort();
    return sorted;
}

std::shared_ptr<FakeSpeechModule> FakeSpeechFramework::module(const QString &locale) const
{
    const auto &modules = analyzer().modules();
    const auto found = std::find_if(
        modules.begin(), modules.end(), [&locale](const std::shared_ptr<FakeSpeechModule> &candidate) {
            return candidate->locale() == locale;
        });
    return found == modules.end() ? nullptr : *found;
}

QStringList FakeSpeechFramework::locales() const
{
    QStringList locales;
    for (const auto &candidate : analyzer().modules()) {
        locales.append(candidate->locale());
    }
    return locales;
}

} // namespace lumaphone::test
