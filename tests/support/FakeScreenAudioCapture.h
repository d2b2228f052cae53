#pragma once

#include "platform/ScreenAudioCapture.h"
#include "support/FakeRecording.h"

#include <memory>
#include <optional>

namespace lumaphone::test {

/// A service that records outputs and does what the test says. Main thread.
class FakeScreenAudioCapture final : public ScreenAudioCapture
{
public:
    bool isGranted = true;
    std::optional<SoundDevice> output {{QStringLiteral("speakers"), QStringLiteral("Speakers")}};
    std::optional<QString> outputFailure;

    bool preflightAccess() override
    {
        ++m_checks;
        return isGranted;
    }
    void requestAccess() override { ++m_requests; }
    QCoro::Task<std::optional<SoundDevice>> defaultOutput() override
    {
        m_recording->steps.append(QStringLiteral("default output"));
        if (outputFailure) {
            throw CaptureServiceError(*outputFailure);
        }
        const std::optional<SoundDevice> found = output; // the compiler would move a member out
        co_return found;
    }
    std::unique_ptr<SoundRecorder> makeRecorder(const SoundFormat &format) override
    {
        m_format = format;
        return m_recording->makeRecorder();
    }

    int checks() const { return m_checks; }
    int requests() const { return m_requests; }
    /// The format of the newest recorder.
    const SoundFormat &format() const { return m_format; }
    FakeRecording &recording() const { return *m_recording; }

private:
    int m_checks = 0;
    int m_requests = 0;
    SoundFormat m_format;
    std::shared_ptr<FakeRecording> m_recording = std::make_shared<FakeRecording>();
};

} // namespace lumaphone::test
