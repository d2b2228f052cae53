#pragma once

#include "platform/MicrophoneCapture.h"
#include "support/CoroutineGate.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace lumaphone::test {

class FakeMicrophoneOutput final : public MicrophoneOutput
{
public:
    void setSampleBufferDelegate(MicrophoneSampleDelegate *delegate, SerialQueue *queue) override;

    MicrophoneSampleDelegate *delegate() const { return m_delegate; }
    SerialQueue *queue() const { return m_queue; }
    /// Delivers a buffer on the queue and returns when it was taken.
    void deliver(const AudioSampleBuffer &buffer);
    /// Loses the device, on a thread of its own.
    void failBySelf(const QString &message);

private:
    MicrophoneSampleDelegate *m_delegate = nullptr;
    SerialQueue *m_queue = nullptr;
};

/// What a fake microphone service does and has seen; shared with its session.
struct FakeMicrophoneState
{
    bool canAddInput = true;
    bool canAddOutput = true;
    std::optional<QString> startFailure;
    CoroutineGate startGate;
    bool isRunning = false;
    QStringList steps; ///< such as "begin", "add input", "start"
    std::vector<std::shared_ptr<MicrophoneInput>> inputs;
    std::vector<std::shared_ptr<MicrophoneOutput>> outputs;
};

/// A microphone service that does what the test says. Main thread.
class FakeMicrophoneCapture final : public MicrophoneCapture
{
public:
    CaptureAuthorization authorization = CaptureAuthorization::Authorized;
    bool answer = true; ///< what the user says when asked
    std::optional<MicrophoneDevice> device {{QStringLiteral("mic"), QStringLiteral("Microphone")}};
    std::optional<QString> inputFailure;

    CaptureAuthorization authorizationStatus() override { return authorization; }
    QCoro::Task<bool> requestAccess() override;
    QCoro::Task<std::optional<MicrophoneDevice>> defaultDevice() override;
    std::shared_ptr<MicrophoneInput> makeInput(const MicrophoneDevice &device) override;
    std::shared_ptr<MicrophoneOutput> makeOutput() override;
    std::unique_ptr<MicrophoneSession> makeSession() override;

    int requests() const { return m_requests; }
    FakeMicrophoneState &state() const { return *m_state; }
    /// The newest output, which must exist.
    FakeMicrophoneOutput &output() const { return *m_outputs.back(); }
    const std::vector<std::shared_ptr<FakeMicrophoneOutput>> &outputs() const { return m_outputs; }

private:
    int m_requests = 0;
    std::shared_ptr<FakeMicrophoneState> m_state = std::make_shared<FakeMicrophoneState>();
    std::vector<std::shared_ptr<FakeMicrophoneOutput>> m_outputs;
};

} // namespace lumaphone::test
