#pragma once

#include "platform/CaptureServiceError.h"
#include "platform/sound/PulseDevices.h"
#include "platform/sound/PulseOptions.h"

#include <QString>

#include <pulse/context.h>
#include <pulse/operation.h>
#include <pulse/subscribe.h>
#include <pulse/thread-mainloop.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace lumaphone {

/// "<what>：<the text libpulse has for this code>".
CaptureServiceError pulseError(const QString &what, int code);

/// A connection to the sound server with the thread that serves it. The user's server is never started by it.
///
/// Its methods wait for the server's answer, at most the time limit, so they are called neither on the main
/// thread nor on the connection's own. They throw CaptureServiceError when the server refuses, does not
/// answer, has gone, or when `stop` is requested.
///
/// What callbacks of the server write and others read is guarded by the connection's lock: see change() and
/// waitUntil(). Where both are taken, the main loop's lock comes first.
class PulseConnection
{
public:
    using EventHandler = std::function<void(pa_subscription_event_type_t event, std::uint32_t index)>;

    /// Holds the lock of libpulse's main loop, which every call of libpulse needs.
    class LoopLock
    {
    public:
        explicit LoopLock(pa_threaded_mainloop *loop);
        ~LoopLock();
        LoopLock(const LoopLock &) = delete;
        LoopLock &operator=(const LoopLock &) = delete;

    private:
        pa_threaded_mainloop *m_loop;
    };

    /// As long as it lives, its handler is called.
    class Watch
    {
    public:
        ~Watch();
        Watch(const Watch &) = delete;
        Watch &operator=(const Watch &) = delete;

    private:
        friend class PulseConnection;
        Watch(PulseConnection &connection, std::uint32_t mask, EventHandler onEvent);

        PulseConnection &m_connection;
        const std::uint32_t m_mask;
        const EventHandler m_onEvent;
    };

    /// Something asked of the server. Its callback ends with arrive().
    struct Reply
    {
        PulseConnection &connection;
        bool hasArrived = false;
        int error = 0;

        void arrive(int errorCode);
    };

    /// Connects.
    PulseConnection(const PulseOptions &options, std::stop_token stop);
    ~PulseConnection();
    PulseConnection(const PulseConnection &) = delete;
    PulseConnection &operator=(const PulseConnection &) = delete;

    /// The server's name and version, as it says them.
    QString serverName();
    /// Empty if there is none.
    std::string defaultSinkName();
    std::string defaultSourceName();
    std::vector<PulseSink> sinks();
    std::vector<PulseSource> sources();
    std::optional<PulseSink> sink(const std::string &name);
    std::optional<PulseSource> source(const std::string &name);
    std::optional<PulseSource> source(std::uint32_t index);

    /// Calls `onEvent` on the connection's thread for every event of the kinds in `mask`.
    std::unique_ptr<Watch> watch(std::uint32_t mask, EventHandler onEvent);

    /// Any thread, without waiting.
    bool isLost() const;
    /// Throws the reason if the connection has been lost.
    void throwIfLost() const;

    // For those who record on this connection.

    pa_context *context() const { return m_context.get(); }
    pa_threaded_mainloop *loop() const { return m_loop.get(); }
    /// Starts an operation under the main loop's lock and waits for its reply, or until `isVoid` says that
    /// none will come, which is an error. `isVoid` is looked at whenever something has changed.
    void ask(
        Reply &reply, const std::function<pa_operation *()> &start, const std::function<bool()> &isVoid = {});
    /// Waits until `condition`, evaluated under the connection's lock, holds. False if `limit` passes first;
    /// without a limit it waits as long as the connection lasts.
    bool waitUntil(const std::function<bool()> &condition,
        std::optional<std::chrono::milliseconds> limit = std::nullopt);
    /// The same with the time limit of an answer, whose passing is an error.
    void waitForAnswer(const std::function<bool()> &condition);
    /// Makes a change under the connection's lock and wakes who waits for it.
    void change(const std::function<void()> &update);

private:
    struct LoopDeleter
    {
        void operator()(pa_threaded_mainloop *loop) const;
    };
    struct ContextDeleter
    {
        pa_threaded_mainloop *loop;
        void operator()(pa_context *context) const;
    };
    struct ServerReply;

    void connect();
    void takeState();
    void takeEvent(pa_subscription_event_type_t event, std::uint32_t index) const;
    ServerReply askServer();
    template<typename Row, typename Start> std::vector<Row> list(Start start);

    const PulseOptions m_options;
    const std::stop_token m_stop;
    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    bool m_isReady = false;
    bool m_isLost = false;
    int m_lossCode = 0;
    std::uint32_t m_watched = PA_SUBSCRIPTION_MASK_NULL;
    std::vector<const Watch *> m_watches; ///< under the main loop's lock
    std::unique_ptr<pa_threaded_mainloop, LoopDeleter> m_loop;
    std::unique_ptr<pa_context, ContextDeleter> m_context;
};

} // namespace lumaphone
