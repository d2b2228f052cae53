#pragma once

#include "speech/hosted/HostRecovery.h"
#include "speech/hosted/SoundOutbox.h"
#include "speech/hosted/SpeechHostProcess.h"
#include "speech/protocol/FrameReader.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace lumaphone {

/// A conversation with a speech host that is started again when it dies. A thread of its own starts the host,
/// gives it sound and takes its reports.
class SpeechHostSession
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Takes a text, on the session's thread.
    using TextSink = std::function<void(const host::Decoded &)>;

    /// For models that the user has installed.
    static QString reinstallTheModel() { return QStringLiteral("請移除後重新安裝。"); }

    /// A host that says nothing for so long although it owes something has lost its way.
    static constexpr std::chrono::milliseconds longestSilence = std::chrono::seconds(60);

    /// `program`: the host's executable. `repair`: a sentence for the user: what to do about damaged files.
    SpeechHostSession(QString program, host::Configure configuration, TextSink onText,
        QString repair = reinstallTheModel(), std::chrono::milliseconds silence = longestSilence);
    /// Ends the host at once.
    ~SpeechHostSession();
    SpeechHostSession(const SpeechHostSession &) = delete;
    SpeechHostSession &operator=(const SpeechHostSession &) = delete;

    // One thread after another. What ends the session is thrown as SpeechFrameworkError.
    /// Starts the host and waits until it has loaded its networks.
    void start();
    /// Waits while the host is behind.
    void append(std::span<const std::int16_t> samples);
    /// Waits for the last text.
    void finish();

    /// Any thread: ends the host at once; what waits returns.
    void cancel() noexcept;

    /// Any thread: the process of the running host; -1 while there is none.
    pid_t processId() const;

private:
    enum class State { idle, loading, running, restarting, finished, failed, cancelled };
    enum class Ending { died, stalled, failed, finished, cancelled };

    struct Connection;

    // The session's thread.
    void run();
    Ending converse();
    Ending waitAndServe(Connection &connection);
    std::optional<Ending> receive(Connection &connection);
    std::optional<Ending> take(const host::Report &report);
    std::optional<Ending> takeFailure(const host::Failure &failure);
    void send(Connection &connection);
    bool fillOutgoing(Connection &connection);
    bool recover(Ending ending);
    void fail(const QString &description);
    QString textOf(const host::Failure &failure) const;
    int patience(bool hasUnsentSound) const;

    void enter(State state);
    // With m_mutex held.
    bool isOver() const;
    void throwIfFailed() const;
    void wake() noexcept;

    const QString m_program;
    const host::Configure m_configuration;
    const TextSink m_onText;
    const QString m_repair;
    const std::chrono::milliseconds m_longestSilence;
    int m_wake = -1; ///< an eventfd

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    State m_state = State::idle;
    QString m_error;
    SoundOutbox m_outbox;
    bool m_hasEnded = false; ///< no more sound comes
    pid_t m_processId = -1;

    HostRecovery m_recovery;
    std::thread m_thread;
};

} // namespace lumaphone
