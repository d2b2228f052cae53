#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace lumaphone {

/// Samples on their way from one thread to another. Nothing is dropped: the producer waits while the queue
/// is full.
class SampleQueue
{
public:
    /// Full when `capacity` samples or more are pending.
    explicit SampleQueue(std::size_t capacity)
        : m_capacity(capacity)
    {
    }
    SampleQueue(const SampleQueue &) = delete;
    SampleQueue &operator=(const SampleQueue &) = delete;

    /// Copies the samples, after waiting for room. False, without them, once the queue has ended or `stop`
    /// is requested.
    bool append(std::span<const std::int16_t> samples, const std::stop_token &stop)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, stop, [this] { return m_ended || m_pendingSamples < m_capacity; });
        if (m_ended || stop.stop_requested()) {
            return false;
        }
        m_pieces.emplace_back(samples.begin(), samples.end());
        m_pendingSamples += samples.size();
        lock.unlock();
        m_changed.notify_all();
        return true;
    }

    /// How many samples nobody has taken yet.
    std::size_t pendingSamples() const
    {
        const std::lock_guard lock(m_mutex);
        return m_pendingSamples;
    }

    /// No more samples follow; what is pending is still taken.
    void finish() { end(false); }
    /// Drops what is pending and takes no more.
    void close() { end(true); }

    /// Waits for the next piece. None at the end.
    std::optional<std::vector<std::int16_t>> take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_ended || !m_pieces.empty(); });
        if (m_pieces.empty()) {
            return std::nullopt;
        }
        std::optional<std::vector<std::int16_t>> piece(std::move(m_pieces.front()));
        m_pieces.pop_front();
        m_pendingSamples -= piece->size();
        lock.unlock();
        m_changed.notify_all();
        return piece;
    }

private:
    void end(bool dropsPending)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_ended = true;
            if (dropsPending) {
                m_pieces.clear();
                m_pendingSamples = 0;
            }
        }
        m_changed.notify_all();
    }

    const std::size_t m_capacity;
    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<std::vector<std::int16_t>> m_pieces;
    std::size_t m_pendingSamples = 0;
    bool m_ended = false;
};

} // namespace lumaphone
