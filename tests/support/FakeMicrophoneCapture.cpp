#include "support/FakeMicrophoneCapture.h"

#include <thread>

namespace lumaphone::test {

namespace {

class FakeMicrophoneSession final : public MicrophoneSession
{
public:
    explicit FakeMicrophoneSession(std::shared_ptr<FakeMicrophoneState> state)
        : m_state(std::move(state))
    {
    }

    bool canAddInput(const MicrophoneInput &) const override
    {
        m_state->steps.append(QStringLiteral("can add input"));
        return m_state->canAddInput;
    }
    bool canAddOutput(const MicrophoneOutput &) const override
    {
        m_state->steps.append(QStringLiteral("can add output"));
        return m_state->canAddOutput;
    }
    void beginConfiguration() override { m_state->steps.append(QStringLiteral("begin")); }
    void commitConfiguration() override { m_state->steps.append(QStringLiteral("commit")); }
    std::vector<std::shared_ptr<MicrophoneInput>> inputs() const override { return m_state->inputs; }
    std::vector<std::shared_ptr<MicrophoneOutput>> outputs() const override { return m_state->outputs; }
    void addInput(std::shared_ptr<MicrophoneInput> input) override
    {
        m_state->steps.append(QStringLiteral("add input"));
        m_state->inputs.push_back(std::move(input));
    }
    void removeInput(const std::shared_ptr<MicrophoneInput> &input) override
    {
        m_state->steps.append(QStringLiteral("remove input"));
        std::erase(m_state->inputs, input);
    }
    void addOutput(std::shared_ptr<MicrophoneOutput> output) override
    {
        m_state->steps.append(QStringLiteral("add output"));
        m_state->outputs.push_back(std::move(output));
    }
    void removeOutput(const std::shared_ptr<MicrophoneOutput> &output) override
    {
        m_state->steps.append(QStringLiteral("remove output"));
        std::erase(m_state->outputs, output);
    }
    QCoro::Task<> startRunning() override
    {
        m_state->steps.append(QStringLiteral("start"));
        co_await m_state->startGate.passage();
        if (m_state->startFailure) {
            throw CaptureServiceError(*m_state->startFailure);
        }
        m_state->isRunning = true;
    }
    bool isRunning() const override { return m_state->isRunning; }
    void stopRunning() override
    {
        m_state->steps.append(QStringLiteral("stop"));
        m_state->isRunning = false;
    }

private:
    std::shared_ptr<FakeMicrophoneState> m_state;
};

} // namespace

void FakeMicrophoneOutput::setSampleBufferDelegate(MicrophoneSampleDelegate *delegate, SerialQueue *queue)
{
    m_delegate = delegate;
    m_queue = queue;
}

void FakeMicrophoneOutput::deliver(const AudioSampleBuffer &buffer)
{
    m_queue->post([delegate = m_delegate, &buffer] { delegate->didOutputSampleBuffer(buffer); });
    m_queue->drain();
}

void FakeMicrophoneOutput::failBySelf(const QString &message)
{
    std::jthread([this, message] {
        m_delegate->didStopWithError(std::make_exception_ptr(CaptureServiceError(message)));
    }).join();
}

QCoro::Task<bool> FakeMicrophoneCapture::requestAccess()
{
    ++m_requests;
    authorization = answer ? CaptureAuthorization::Authorized : CaptureAuthorization::Denied;
    co_return answer;
}

QCoro::Task<std::optional<MicrophoneDevice>> FakeMicrophoneCapture::defaultDevice()
{
    m_state->steps.append(QStringLiteral("default device"));
    co_return device;
}

std::shared_ptr<MicrophoneInput> FakeMicrophoneCapture::makeInput(const MicrophoneDevice &)
{
    if (inputFailure) {
        throw CaptureServiceError(*inputFailure);
    }
    return std::make_shared<MicrophoneInput>();
}

std::shared_ptr<MicrophoneOutput> FakeMicrophoneCapture::makeOutput()
{
    m_outputs.push_back(std::make_shared<FakeMicrophoneOutput>());
    return m_outputs.back();
}

std::unique_ptr<MicrophoneSession> FakeMicrophoneCapture::makeSession()
{
    return std::make_unique<FakeMicrophoneSession>(m_state);
}

} // namespace lumaphone::test
