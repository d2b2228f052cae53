#pragma once

#include "base/MainQueue.h"
#include "speech/framework/RecognizerThread.h"

namespace lumaphone {

/// Feeds the recognisers of its modules, each on a thread of its own with a queue of its own, so that a
/// recogniser which falls behind for a while holds up neither the input nor the others.
class LocalSpeechAnalyzer final : public SpeechAnalyzer
{
public:
    /// Samples that may wait for one recogniser: 60 s.
    static constexpr std::size_t defaultQueueCapacity
        = 60 * static_cast<std::size_t>(PcmBuffer::sampleRateHz);

    /// A module and the engine that serves it.
    struct Assignment
    {
        std::shared_ptr<LocalSpeechModule> module;
        std::shared_ptr<SpeechEngine> engine;
    };

    LocalSpeechAnalyzer(std::vector<Assignment> assignments, std::shared_ptr<MainQueue> mainQueue,
        std::size_t queueCapacity = defaultQueueCapacity);
    /// Cancels, and waits for the recognisers to notice. Not while start() runs.
    ~LocalSpeechAnalyzer() override;

    QCoro::Task<> prepareToAnalyze(double sampleRateHz) override;
    void start(AnalyzerInputStream &input, const std::stop_token &stop) override;
    void cancelAndFinishNow() override;
    /// Of the recogniser that is furthest behind.
    std::chrono::milliseconds waitingSound() const override;

private:
    void startThreads();
    void feed(AnalyzerInputStream &input, const std::stop_token &stop);

    const std::shared_ptr<MainQueue> m_mainQueue;
    std::vector<std::shared_ptr<RecognizerThread>> m_threads;
    std::stop_source m_cancelled;
};

} // namespace lumaphone
