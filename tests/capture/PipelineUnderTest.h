#pragma once

#include "capture/FakeSpeechFramework.h"
#include "capture/LivePipelineServices.h"
#include "capture/RecordedPipelineEvents.h"
#include "capture/SystemAudioCaptureError.h"
#include "support/Coroutines.h"
#include "support/FakeRecording.h"

#include <QTest>

#include <memory>
#include <optional>

namespace lumaphone::test {

/// A pipeline that records by a capture, which is a fake as its surroundings are.
template<typename Pipeline, typename Capture> class PipelineUnderTest
{
protected:
    /// To be called before each test.
    void makeFakes()
    {
        m_framework = std::make_shared<FakeSpeechFramework>();
        m_capture = std::make_shared<Capture>();
        m_detachedTasks = std::make_shared<DetachedTasks>();
        m_events = {};
    }
    /// To be called after each test: whatever it did, nothing is left.
    void drop()
    {
        m_pipeline = nullptr;
        m_detachedTasks = nullptr;
        settle();
        QCOMPARE(m_framework->reserved(), QStringList());
    }

    LivePipelineServices services() const
    {
        return {m_framework, MainQueue::create(), m_detachedTasks, QLocale::c()};
    }
    FakeRecording &recording() const { return m_capture->recording(); }
    void start() { test::waitFor(m_pipeline->start()); }
    void stop() { test::waitFor(m_pipeline->stop()); }
    std::optional<SystemAudioCaptureError::Case> failureOfStart()
    {
        const auto error = thrownBy<SystemAudioCaptureError>([this] { start(); });
        return error ? std::optional(error->errorCase()) : std::nullopt;
    }
    bool ownerHears(const QStringList &lines) const
    {
        return waitUntil([&] { return m_events.lines() == lines; });
    }

    void verifyThatNothingRuns() const
    {
        QVERIFY(!recording().isRunning());
        QVERIFY(!recording().hasReceiver());
        QVERIFY(m_framework->reserved().isEmpty());
    }
    void verifyThatOneRuns() const
    {
        QVERIFY(recording().isRunning());
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("en_US")});
    }
    /// Two starts, the second while the first one's recording begins.
    void startTwice()
    {
        recording().startGate.close();
        auto first = m_pipeline->start();
        auto second = m_pipeline->start();
        recording().startGate.open();
        test::waitFor(std::move(first));
        test::waitFor(std::move(second));
    }
    std::shared_ptr<FakeSpeechFramework> m_framework;
    std::shared_ptr<Capture> m_capture;
    std::shared_ptr<DetachedTasks> m_detachedTasks;
    RecordedPipelineEvents m_events;
    std::shared_ptr<Pipeline> m_pipeline;
};

} // namespace lumaphone::test
