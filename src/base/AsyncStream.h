#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <limits>
#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>

namespace lumaphone {

/// A stream of values from producing threads to one consuming thread. Producers never wait: when `capacity`
/// elements are pending, the oldest is dropped for a new one.
template<typename Element> class AsyncStream
{
public:
    static constexpr std::size_t unbounded = std::numeric_limits<std::size_t>::max();

    explicit AsyncStream(std::size_t capacity = unbounded)
        : m_capacity(capacity)
    {
    }
    AsyncStream(const AsyncStream &) = delete;
    AsyncStream &operator=(const AsyncStream &) = delete;

    /// Appends an element. Returns false when the stream has ended and the element was dropped.
    bool yield(Element element)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_finished) {
                return false;
            }
            if (m_elements.size() >= m_capacity) {
                m_elements.pop_front();
            }
            m_elements.push_back(std::move(element));
        }
        m_changed.notify_all();
        return true;
    }

    /// Ends the stream: the consumer still receives what is pending. Idempotent.
    void finish() { finish(nullptr); }

    /// Ends the stream with an error, thrown to the consumer after what is pending.
    void fail(std::exception_ptr error) { finish(std::move(error)); }

    /// Waits for the next element. None at the end of the stream or when `stop` is requested, whatever is
    /// pending then.
    std::optional<Element> next(const std::stop_token &stop)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, stop, [this] { return m_finished || !m_elements.empty(); });
        if (stop.stop_requested()) {
            return std::nullopt;
        }
        if (m_elements.empty()) {
            if (const auto error = std::exchange(m_error, nullptr)) {
                std::rethrow_exception(error);
            }
            return std::nullopt;
        }
        std::optional<Element> element(std::move(m_elements.front()));
        m_elements.pop_front();
        lock.unlock();
        m_changed.notify_all();
        return element;
    }

    /// For a producer that can wait, such as a file: returns when fewer than `capacity` elements are pending,
    /// the stream has ended or `stop` is requested. True when there is room.
    bool waitForRoom(const std::stop_token &stop)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, stop, [this] { return m_finished || m_elements.size() < m_capacity; });
        return !m_finished && m_elements.size() < m_capacity;
    }

private:
    void finish(std::exception_ptr error)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_finished) {
                return;
            }
            m_finished = true;
            m_error = std::move(error);
        }
        m_changed.notify_all();
    }

    const std::size_t m_capacity;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<Element> m_elements;
    bool m_finished = false;
    std::exception_ptr m_error;
};

} // namespace lumaphone
