#include "platform/sound/CaptureDelivery.h"

#include <utility>

namespace lumaphone {

namespace {
constexpr double bufferSeconds = 0.020;
constexpr std::size_t bufferCount = 100;

std::size_t bytesPerFrame(const AudioStreamDescription &description)
{
    return bytesPerSample(description.sampleType) * static_cast<std::size_t>(description.channelsPerFrame);
}
} // namespace

void CaptureDelivery::prepare(const AudioStreamDescription &description)
{
    const auto frames = static_cast<std::size_t>(description.sampleRateHz * bufferSeconds);
    const std::lock_guard receiverLock(m_receiverMutex);
    const std::lock_guard lock(m_mutex);
    m_description = description;
    m_pool.emplace(frames * bytesPerFrame(description), bufferCount);
}

void CaptureDelivery::attach(SerialQueue &queue, SoundReceiver receiver)
{
    detach();
    const std::lock_guard receiverLock(m_receiverMutex);
    const std::lock_guard lock(m_mutex);
    m_receiver = std::move(receiver);
    m_queue = &queue;
}

void CaptureDelivery::detach()
{
    const std::lock_guard receiverLock(m_receiverMutex);
    const std::lock_guard lock(m_mutex);
    m_receiver = {};
    m_queue = nullptr;
    ++m_attachment;
    m_isPosted = false;
    if (m_pool) {
        m_pool->clear();
    }
}

void CaptureDelivery::append(const std::byte *data, std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    if (!m_queue || !m_pool) {
        return;
    }
    m_pool->append(data, bytes);
    if (m_pool->hasFullBuffer() && !m_isPosted) {
        m_isPosted = true;
        m_queue->post([self = shared_from_this(), attachment = m_attachment] { self->deliver(attachment); });
    }
}

void CaptureDelivery::fail(const std::exception_ptr &reason)
{
    const std::lock_guard receiverLock(m_receiverMutex);
    if (m_receiver.onEnded) {
        m_receiver.onEnded(reason);
    }
}

void CaptureDelivery::await(const std::optional<QString> &name)
{
    const std::lock_guard receiverLock(m_receiverMutex);
    if (m_receiver.onAwaited) {
        m_receiver.onAwaited(name);
    }
}

std::size_t CaptureDelivery::droppedBuffers() const
{
    const std::lock_guard lock(m_mutex);
    return m_pool ? m_pool->droppedBuffers() : 0;
}

void CaptureDelivery::deliver(std::size_t attachment)
{
    while (deliverOne(attachment)) {
    }
}

bool CaptureDelivery::deliverOne(std::size_t attachment)
{
    const std::lock_guard receiverLock(m_receiverMutex);
    std::span<const std::byte> bytes;
    AudioStreamDescription description;
    {
        const std::lock_guard lock(m_mutex);
        if (attachment != m_attachment) {
            return false;
        }
        const auto taken = m_pool->take();
        if (!taken) {
            m_isPosted = false;
            return false;
        }
        bytes = *taken;
        description = m_description;
    }
    const auto frames = static_cast<std::int64_t>(bytes.size() / bytesPerFrame(description));
    const std::span<const std::byte> planes[] = {bytes};
    m_receiver.onSound(AudioSampleBuffer {
        .frames = frames,
        .durationSeconds = static_cast<double>(frames) / description.sampleRateHz,
        .description = description,
        .planes = planes,
    });
    const std::lock_guard lock(m_mutex);
    m_pool->release();
    return true;
}

} // namespace lumaphone
