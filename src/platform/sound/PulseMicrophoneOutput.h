#pragma once

#include "platform/MicrophoneCapture.h"
#include "platform/sound/CaptureDelivery.h"

#include <exception>
#include <memory>
#include <mutex>

namespace lumaphone {

/// Carries a session's sound and its failure to the delegate.
class PulseMicrophoneOutput final : public MicrophoneOutput
{
public:
    void setSampleBufferDelegate(MicrophoneSampleDelegate *delegate, SerialQueue *queue) override;

    const std::shared_ptr<CaptureDelivery> &delivery() const { return m_delivery; }
    /// Tells the delegate, if there is one, that the session stopped by itself. Any thread.
    void fail(const std::exception_ptr &error);

private:
    const std::shared_ptr<CaptureDelivery> m_delivery = std::make_shared<CaptureDelivery>();
    std::mutex m_mutex; ///< held while the delegate is told
    MicrophoneSampleDelegate *m_delegate = nullptr;
};

} // namespace lumaphone
