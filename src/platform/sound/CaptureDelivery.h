#pragma once

#include "base/SerialQueue.h"
#include "platform/SoundRecorder.h"
#include "platform/sound/CaptureBufferPool.h"

#include <cstddef>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>

namespace lumaphone {

/// Hands recorded sound to a receiver on a serial queue, in buffers of 20 ms. The recording thread never
/// waits for the receiver; up to two seconds of sound wait for a queue that falls behind, then the oldest is
/// dropped. Its methods may be called from any thread, except that the queue must not detach.
class CaptureDelivery : public std::enable_shared_from_this<CaptureDelivery>
{
public:
    /// Makes the buffers for sound of this kind. What was waiting is dropped.
    void prepare(const AudioStreamDescription &description);
    void attach(SerialQueue &queue, SoundReceiver receiver);
    /// After it returns the receiver is not called again and the queue is not used again.
    void detach();
    /// Adds interleaved frames, or silence if `data` is null. Ignored while nothing is attached or prepared.
    void append(const std::byte *data, std::size_t bytes);
    /// Tells the receiver, if there is one, that the recording has ended by itself.
    void fail(const std::exception_ptr &reason);
    /// Tells the receiver, if there is one, what is waited for, or with none that sound flows again.
    void await(const std::optional<QString> &name);
    /// Buffers lost since prepare() because the queue fell behind.
    std::size_t droppedBuffers() const;

private:
    void deliver(std::size_t attachment);
    bool deliverOne(std::size_t attachment);

    std::mutex m_receiverMutex; ///< held while the receiver works; taken before m_mutex
    SoundReceiver m_receiver;
    mutable std::mutex m_mutex; ///< held for moments only
    SerialQueue *m_queue = nullptr;
    std::size_t m_attachment = 0; ///< closures posted for an earlier one are void
    bool m_isPosted = false;
    AudioStreamDescription m_description;
    std::optional<CaptureBufferPool> m_pool;
};

} // namespace lumaphone
