#pragma once

#include "base/MainQueue.h"
#include "platform/MicrophoneCapture.h"
#include "platform/sound/PulseOptions.h"
#include "platform/sound/RecordingThread.h"

#include <memory>
#include <vector>

namespace lumaphone {

/// Records the first of its inputs for all of its outputs. Whoever changes inputs or outputs while it runs
/// ends the recording; startRunning() begins it anew with what is there then.
class PulseMicrophoneSession final : public MicrophoneSession
{
public:
    PulseMicrophoneSession(std::shared_ptr<MainQueue> mainQueue, PulseOptions options);

    bool canAddInput(const MicrophoneInput &input) const override;
    bool canAddOutput(const MicrophoneOutput &output) const override;
    void beginConfiguration() override;
    void commitConfiguration() override;
    std::vector<std::shared_ptr<MicrophoneInput>> inputs() const override { return m_inputs; }
    std::vector<std::shared_ptr<MicrophoneOutput>> outputs() const override { return m_outputs; }
    void addInput(std::shared_ptr<MicrophoneInput> input) override;
    void removeInput(const std::shared_ptr<MicrophoneInput> &input) override;
    void addOutput(std::shared_ptr<MicrophoneOutput> output) override;
    void removeOutput(const std::shared_ptr<MicrophoneOutput> &output) override;
    QCoro::Task<> startRunning() override;
    /// True from startRunning() on, also while the device is being opened.
    bool isRunning() const override;
    /// The device is free when it returns; no server can delay that.
    void stopRunning() override;

private:
    void takeEffect();
    std::unique_ptr<RecordingThread> record() const;

    std::shared_ptr<MainQueue> m_mainQueue;
    const PulseOptions m_options;
    std::vector<std::shared_ptr<MicrophoneInput>> m_inputs;
    std::vector<std::shared_ptr<MicrophoneOutput>> m_outputs;
    bool m_isConfiguring = false;
    bool m_hasChanged = false; ///< since the recording began
    std::unique_ptr<RecordingThread> m_recording;
};

} // namespace lumaphone
