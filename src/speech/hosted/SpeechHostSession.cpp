#include "speech/hosted/SpeechHostSession.h"

#include "base/SerialQueue.h"
#include "platform/SpeechFramework.h"
#include "speech/protocol/RuntimeVersion.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace lumaphone {

namespace {

// Sound that may wait for the socket: a second, so that a host which falls behind is felt soon.
constexpr std::size_t unsentLimit = 16000;
constexpr std::size_t pieceSize = 4096;

void noteVersion(const host::Ready &ready)
{
    const auto version = host::parseRuntimeVersion(ready.runtimeVersion);
    if (version && *version > host::newestKnownRuntime) {
        qInfo("The speech runtime %s is newer than those that were tested.", ready.runtimeVersion.c_str());
    }
}

} // namespace

/// A host and what is on the way to and from it.
struct SpeechHostSession::Connection
{
    explicit Connection(const QString &program)
        : process(program)
    {
    }

    SpeechHostProcess process;
    FrameReader frames;
    Bytes outgoing;
    std::size_t written = 0; ///< of outgoing
    bool hasSentEnd = false;
};

SpeechHostSession::SpeechHostSession(QString program, host::Configure configuration, TextSink onText,
    QString repair, std::chrono::milliseconds silence)
    : m_program(std::move(program))
    , m_configuration(std::move(configuration))
    , m_onText(std::move(onText))
    , m_repair(std::move(repair))
    , m_longestSilence(silence)
    , m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

SpeechHostSession::~SpeechHostSession()
{
    cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
    ::close(m_wake);
}

void SpeechHostSession::start()
{
    std::unique_lock lock(m_mutex);
    if (m_state == State::idle) {
        m_state = State::loading;
        m_thread = std::thread([this] { run(); });
    }
    m_changed.wait(lock, [this] { return m_state != State::loading; });
    throwIfFailed();
}

void SpeechHostSession::append(std::span<const std::int16_t> samples)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_outbox.unsent() < unsentLimit || isOver(); });
    throwIfFailed();
    m_outbox.append(samples);
    wake();
}

void SpeechHostSession::finish()
{
    std::unique_lock lock(m_mutex);
    m_hasEnded = true;
    wake();
    m_changed.wait(lock, [this] { return isOver(); });
    throwIfFailed();
}

void SpeechHostSession::cancel() noexcept
{
    enter(State::cancelled);
    wake();
}

pid_t SpeechHostSession::processId() const
{
    const std::lock_guard lock(m_mutex);
    return m_processId;
}

bool SpeechHostSession::isOver() const
{
    return m_state == State::finished || m_state == State::failed || m_state == State::cancelled;
}

void SpeechHostSession::throwIfFailed() const
{
    if (m_state == State::failed) {
        throw SpeechFrameworkError(m_error);
    }
}

void SpeechHostSession::enter(State state)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!isOver()) {
            m_state = state;
        }
    }
    m_changed.notify_all();
}

void SpeechHostSession::wake() noexcept
{
    ::eventfd_write(m_wake, 1);
}

void SpeechHostSession::run()
{
    nameCurrentThread("speech-host");
    try {
        while (true) {
            // A session that is over has no host any more.
            const Ending ending = converse();
            if (ending == Ending::finished) {
                enter(State::finished);
            } else if (ending == Ending::failed) {
                enter(State::failed);
            }
            const bool isLost = ending == Ending::died || ending == Ending::stalled;
            if (!isLost || !recover(ending)) {
                return;
            }
        }
    } catch (const std::exception &error) {
        fail(localizedDescription(error));
    }
}

/// One host, from its start to its end.
SpeechHostSession::Ending SpeechHostSession::converse()
{
    Connection connection(m_program);
    {
        const std::lock_guard lock(m_mutex);
        m_processId = connection.process.processId();
    }
    connection.outgoing = framed(host::encode(host::Request {m_configuration}));
    const Ending ending = waitAndServe(connection);
    const std::lock_guard lock(m_mutex);
    m_processId = -1;
    return ending;
}

SpeechHostSession::Ending SpeechHostSession::waitAndServe(Connection &connection)
{
    while (true) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_state == State::cancelled) {
                return Ending::cancelled;
            }
        }
        const bool hasMore = fillOutgoing(connection);
        std::array<pollfd, 2> waits {{
            {connection.process.socket(), static_cast<short>(POLLIN | (hasMore ? POLLOUT : 0)), 0},
            {m_wake, POLLIN, 0},
        }};
        const int ready = ::poll(waits.data(), waits.size(), patience(hasMore));
        if (ready == 0) {
            return Ending::stalled;
        }
        if ((waits[1].revents & POLLIN) != 0) {
            eventfd_t count = 0;
            ::eventfd_read(m_wake, &count);
        }
        // What a dying host said last is heard before its end is noticed.
        if ((waits[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
            if (const auto ending = receive(connection)) {
                return *ending;
            }
        }
        if ((waits[0].revents & POLLOUT) != 0) {
            send(connection);
        }
    }
}

/// In milliseconds, for poll(): without end where the host owes nothing.
int SpeechHostSession::patience(bool hasUnsentSound) const
{
    const std::lock_guard lock(m_mutex);
    const bool owes = m_state != State::running || m_recovery.isOwedText() || m_hasEnded || hasUnsentSound;
    // To load takes its time, on whatever machine.
    const auto patience = m_state == State::running ? m_longestSilence : longestSilence;
    return owes ? static_cast<int>(patience.count()) : -1;
}

std::optional<SpeechHostSession::Ending> SpeechHostSession::receive(Connection &connection)
{
    std::array<std::uint8_t, 16384> bytes;
    const ssize_t count = ::recv(connection.process.socket(), bytes.data(), bytes.size(), 0);
    if (count < 0) {
        return errno == EAGAIN || errno == EINTR ? std::nullopt : std::optional(Ending::died);
    }
    if (count == 0) {
        return Ending::died;
    }
    try {
        connection.frames.append(std::span(bytes).first(static_cast<std::size_t>(count)));
        while (const auto content = connection.frames.next()) {
            if (const auto ending = take(host::decodeReport(*content))) {
                return ending;
            }
        }
    } catch (const WireError &) {
        // Whatever it has become, it is no speech host any more.
        return Ending::died;
    }
    return std::nullopt;
}

std::optional<SpeechHostSession::Ending> SpeechHostSession::take(const host::Report &report)
{
    if (const auto *const text = std::get_if<host::Decoded>(&report)) {
        m_recovery.decoded(*text);
        if (text->isFinal) {
            // Whatever happens next, this text shall not come twice.
            const std::lock_guard lock(m_mutex);
            m_outbox.settle(text->end);
        }
        m_onText(*text);
    } else if (const auto *const segment = std::get_if<host::Closed>(&report)) {
        m_recovery.closed(*segment);
    } else if (const auto *const settled = std::get_if<host::Settled>(&report)) {
        m_recovery.settled();
        const std::lock_guard lock(m_mutex);
        m_outbox.settle(settled->position);
    } else if (const auto *const ready = std::get_if<host::Ready>(&report)) {
        noteVersion(*ready);
        enter(State::running);
    } else if (std::holds_alternative<host::Finished>(report)) {
        return Ending::finished;
    } else if (const auto *const failure = std::get_if<host::Failure>(&report)) {
        return takeFailure(*failure);
    }
    return std::nullopt;
}

std::optional<SpeechHostSession::Ending> SpeechHostSession::takeFailure(const host::Failure &failure)
{
    const std::lock_guard lock(m_mutex);
    // A single decode that fails may be the sound's fault; networks that cannot be loaded stay so.
    if (m_state == State::running && failure.kind == host::FailureKind::decoding) {
        return Ending::died;
    }
    m_error = textOf(failure);
    return Ending::failed;
}

/// Takes sound off the outbox when all before it has been written. True while there is something to write.
bool SpeechHostSession::fillOutgoing(Connection &connection)
{
    if (connection.written < connection.outgoing.size()) {
        return true;
    }
    connection.outgoing.clear();
    connection.written = 0;
    {
        const std::lock_guard lock(m_mutex);
        if (m_state != State::running) {
            return false;
        }
        if (auto piece = m_outbox.next(pieceSize)) {
            connection.outgoing = framed(
                host::encode(host::Request {host::Sound {piece->position, std::move(piece->samples)}}));
        } else if (m_hasEnded && !connection.hasSentEnd) {
            connection.hasSentEnd = true;
            connection.outgoing = framed(host::encode(host::Request {host::EndOfSound {}}));
        }
    }
    m_changed.notify_all();
    return !connection.outgoing.empty();
}

void SpeechHostSession::send(Connection &connection)
{
    const auto left = std::span<const std::uint8_t>(connection.outgoing).subspan(connection.written);
    const ssize_t count
        = ::send(connection.process.socket(), left.data(), left.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count > 0) {
        connection.written += static_cast<std::size_t>(count);
    }
}

/// Prepares for the next host. False if there shall be none.
bool SpeechHostSession::recover(Ending ending)
{
    std::unique_lock lock(m_mutex);
    if (m_state == State::loading) {
        lock.unlock();
        fail(QStringLiteral("語音辨識程式在載入模型時結束，模型可能已損壞，%1").arg(m_repair));
        return false;
    }
    const auto now = std::chrono::steady_clock::now();
    const bool hasStalled = ending == Ending::stalled;
    const auto restart = hasStalled ? m_recovery.stalled(now, m_outbox.sentPosition())
                                    : m_recovery.died(now, m_outbox.sentPosition());
    if (!restart) {
        lock.unlock();
        fail(hasStalled ? QStringLiteral("語音辨識程式一再沒有回應，已停止辨識。")
                        : QStringLiteral("語音辨識程式一再意外結束，已停止辨識。"));
        return false;
    }
    if (restart->skipTo) {
        m_outbox.settle(*restart->skipTo);
    }
    m_outbox.rewind();
    if (!isOver()) {
        m_state = State::restarting;
    }
    return true;
}

QString SpeechHostSession::textOf(const host::Failure &failure) const
{
    const QString detail = QString::fromStdString(failure.detail);
    switch (failure.kind) {
    case host::FailureKind::protocol:
        return QStringLiteral("語音辨識程式與 Lumaphone 的版本不符，請重新安裝 Lumaphone。（%1）")
            .arg(detail);
    case host::FailureKind::runtimeMissing:
        return QStringLiteral("無法載入語音辨識執行庫 libsherpa-onnx-c-api.so，請重新安裝 Lumaphone。（%1）")
            .arg(detail);
    case host::FailureKind::runtimeVersion:
        return QStringLiteral("語音辨識執行庫的版本 %1 太舊，需要 1.12.35 以上的版本。").arg(detail);
    case host::FailureKind::voiceDetector:
        return QStringLiteral("語音偵測模型缺少或已損壞，%1（%2）").arg(m_repair, detail);
    case host::FailureKind::network:
        return QStringLiteral("語音辨識模型缺少或已損壞，%1（%2）").arg(m_repair, detail);
    case host::FailureKind::permission:
        return QStringLiteral("沒有讀取語音辨識檔案的權限，請檢查檔案權限後再試一次。（%1）").arg(detail);
    case host::FailureKind::decoding:
        return QStringLiteral("語音辨識模型無法使用，%1（%2）").arg(m_repair, detail);
    }
    Q_UNREACHABLE();
}

void SpeechHostSession::fail(const QString &description)
{
    {
        const std::lock_guard lock(m_mutex);
        m_error = description;
    }
    enter(State::failed);
}

} // namespace lumaphone
