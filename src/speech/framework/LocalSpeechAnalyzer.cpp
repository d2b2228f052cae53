#include "speech/framework/LocalSpeechAnalyzer.h"

#include "base/Completion.h"

#include <algorithm>

namespace lumaphone {

namespace {

using Modules = RecognizerThread::Modules;

Modules modulesOf(const Modules &modules, const std::vector<QString> &localeIdentifiers)
{
    Modules found;
    std::copy_if(
        modules.begin(), modules.end(), std::back_inserter(found), [&localeIdentifiers](const auto &module) {
            return std::find(localeIdentifiers.begin(), localeIdentifiers.end(), module->localeIdentifier())
                != localeIdentifiers.end();
        });
    return found;
}

RecognitionSink sinkInto(Modules modules)
{
    return [modules = std::move(modules)](const QString &localeIdentifier, const SpeechResult &result) {
        for (const auto &module : modules) {
            if (module->localeIdentifier() == localeIdentifier) {
                module->give(result);
            }
        }
    };
}

std::vector<QString> localesOf(const Modules &modules)
{
    std::vector<QString> locales;
    for (const auto &module : modules) {
        if (std::find(locales.begin(), locales.end(), module->localeIdentifier()) == locales.end()) {
            locales.push_back(module->localeIdentifier());
        }
    }
    return locales;
}

} // namespace

LocalSpeechAnalyzer::LocalSpeechAnalyzer(
    std::vector<Assignment> assignments, std::shared_ptr<MainQueue> mainQueue, std::size_t queueCapacity)
    : m_mainQueue(std::move(mainQueue))
{
    while (!assignments.empty()) {
        const std::shared_ptr<SpeechEngine> engine = assignments.front().engine;
        const auto others = std::stable_partition(assignments.begin(), assignments.end(),
            [&engine](const Assignment &assignment) { return assignment.engine == engine; });
        Modules ofEngine;
        std::transform(assignments.begin(), others, std::back_inserter(ofEngine),
            [](const Assignment &assignment) { return assignment.module; });
        assignments.erase(assignments.begin(), others);
        for (const auto &recognizer : engine->makeRecognizers(localesOf(ofEngine), sinkInto(ofEngine))) {
            m_threads.push_back(std::make_shared<RecognizerThread>(
                recognizer, modulesOf(ofEngine, recognizer->localeIdentifiers()), queueCapacity));
        }
    }
}

LocalSpeechAnalyzer::~LocalSpeechAnalyzer()
{
    cancelAndFinishNow();
}

QCoro::Task<> LocalSpeechAnalyzer::prepareToAnalyze(double sampleRateHz)
{
    if (sampleRateHz != PcmBuffer::sampleRateHz) {
        throw SpeechFrameworkError(
            QStringLiteral("語音辨識只接受 %1 Hz 的聲音。").arg(qRound(PcmBuffer::sampleRateHz)));
    }
    std::vector<QCoro::Task<>> loads;
    for (const auto &thread : m_threads) {
        loads.push_back(runInBackground(m_mainQueue, thread->name(), [thread] { thread->load(); }));
    }
    for (QCoro::Task<> &load : loads) {
        co_await load;
    }
}

void LocalSpeechAnalyzer::start(AnalyzerInputStream &input, const std::stop_token &stop)
{
    const std::stop_callback onStop(stop, [this] { cancelAndFinishNow(); });
    try {
        startThreads();
        feed(input, m_cancelled.get_token());
    } catch (const std::exception &error) {
        cancelAndFinishNow();
        throw SpeechFrameworkError(localizedDescription(error));
    }
}

void LocalSpeechAnalyzer::startThreads()
{
    for (const auto &thread : m_threads) {
        thread->start();
    }
}

void LocalSpeechAnalyzer::feed(AnalyzerInputStream &input, const std::stop_token &stop)
{
    while (const auto next = input.next(stop)) {
        for (const auto &thread : m_threads) {
            thread->append(next->buffer->samples(), stop);
        }
    }
    if (stop.stop_requested()) {
        return;
    }
    for (const auto &thread : m_threads) {
        thread->finishInput();
    }
    for (const auto &thread : m_threads) {
        thread->waitUntilDone(stop);
    }
}

std::chrono::milliseconds LocalSpeechAnalyzer::waitingSound() const
{
    std::size_t samples = 0;
    for (const auto &thread : m_threads) {
        samples = std::max(samples, thread->waitingSamples());
    }
    return std::chrono::milliseconds(samples * 1000 / static_cast<std::size_t>(PcmBuffer::sampleRateHz));
}

void LocalSpeechAnalyzer::cancelAndFinishNow()
{
    m_cancelled.request_stop();
    for (const auto &thread : m_threads) {
        thread->cancel();
    }
    for (const auto &thread : m_threads) {
        thread->waitUntilLoadingEnds();
    }
}

} // namespace lumaphone
