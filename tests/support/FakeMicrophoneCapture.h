#pragma once

#include "platform/MicrophoneCapture.h"
#include "support/FakeRecording.h"

#include <memory>
#include <optional>

namespace lumaphone::test {

/// A microphone service that does what the test says. Main thread.
class FakeMicrophoneCapture final : public MicrophoneCapture
{
public:
    CaptureAuthorization authorization = CaptureAuthorization::authorized;
    bool answer = true; ///< what the user says when asked
    std::optional<SoundDevice> input {{QStringLiteral("mic"), QStringLiteral("Microphone")}};
    std::optional<QString> inputFailure;

    CaptureAuthorization authorizationStatus() override { return authorization; }
    QCoro::Task<bool> requestAccess() override
    {
        ++m_requests;
        authorization = answer ? CaptureAuthorization::authorized : CaptureAuthorization::denied;
        co_return answer;
    }
    QCoro::Task<std::optional<SoundDevice>> defaultInput() override
    {
        m_recording->steps.append(QStringLiteral("default input"));
        if (inputFailure) {
            throw CaptureServiceError(*inputFailure);
        }
        const std::optional<SoundDevice> found = input; // the compiler would move a member out
        co_return found;
    }
    std::unique_ptr<SoundRecorder> makeRecorder() override { return m_recording->makeRecorder(); }

    int requests() const { return m_requests; }
    FakeRecording &recording() const { return *m_recording; }

private:
    int m_requests = 0;
    std::shared_ptr<FakeRecording> m_recording = std::make_shared<FakeRecording>();
};

} // namespace lumaphone::test
