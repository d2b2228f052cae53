#include "platform/sound/PulseConnection.h"

#include <pulse/error.h>
#include <pulse/introspect.h>

#include <utility>

namespace lumaphone {

namespace {

std::string text(const char *value)
{
    return value ? value : std::string();
}

PulseSink rowFrom(const pa_sink_info &info)
{
    return {info.index, text(info.name), text(info.description), text(info.monitor_source_name)};
}

PulseSource rowFrom(const pa_source_info &info)
{
    return {info.index, text(info.name), text(info.description), info.monitor_of_sink, info.sample_spec,
        info.channel_map};
}

template<typename Row> struct ListReply : PulseConnection::Reply
{
    std::vector<Row> rows;
};

template<typename Row, typename Info>
void takeRow(pa_context *context, const Info *info, int endOfList, void *userData)
{
    auto &reply = *static_cast<ListReply<Row> *>(userData);
    if (endOfList == 0) {
        reply.connection.change([&] { reply.rows.push_back(rowFrom(*info)); });
        return;
    }
    const int code = endOfList < 0 ? pa_context_errno(context) : 0;
    reply.arrive(code == PA_ERR_NOENTITY ? 0 : code);
}

/// Ends an operation that nobody waits for any longer: its callback is not called after this.
class OperationGuard
{
public:
    OperationGuard(pa_threaded_mainloop *loop, pa_operation *operation)
        : m_loop(loop)
        , m_operation(operation)
    {
    }
    ~OperationGuard()
    {
        const PulseConnection::LoopLock lock(m_loop);
        pa_operation_cancel(m_operation);
        pa_operation_unref(m_operation);
    }
    OperationGuard(const OperationGuard &) = delete;
    OperationGuard &operator=(const OperationGuard &) = delete;

private:
    pa_threaded_mainloop *m_loop;
    pa_operation *m_operation;
};

/// Some servers answer with a placeholder such as "@DEFAULT_SINK@" while they have no such device.
std::string defaultName(const char *name)
{
    return name && *name != '@' ? name : std::string();
}

template<typename Row> std::optional<Row> firstOf(std::vector<Row> rows)
{
    return rows.empty() ? std::nullopt : std::optional<Row>(std::move(rows.front()));
}

} // namespace

struct PulseConnection::ServerReply : Reply
{
    QString name;
    std::string sink;
    std::string source;
};

CaptureServiceError pulseError(const QString &what, int code)
{
    return CaptureServiceError(QStringLiteral("%1：%2").arg(what, QString::fromUtf8(pa_strerror(code))));
}

PulseConnection::LoopLock::LoopLock(pa_threaded_mainloop *loop)
    : m_loop(loop)
{
    pa_threaded_mainloop_lock(m_loop);
}

PulseConnection::LoopLock::~LoopLock()
{
    pa_threaded_mainloop_unlock(m_loop);
}

void PulseConnection::Reply::arrive(int errorCode)
{
    connection.change([&] {
        hasArrived = true;
        error = errorCode;
    });
}

void PulseConnection::LoopDeleter::operator()(pa_threaded_mainloop *loop) const
{
    pa_threaded_mainloop_stop(loop);
    pa_threaded_mainloop_free(loop);
}

void PulseConnection::ContextDeleter::operator()(pa_context *context) const
{
    const LoopLock lock(loop);
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_set_subscribe_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
}

PulseConnection::PulseConnection(const PulseOptions &options, std::stop_token stop)
    : m_options(options)
    , m_stop(std::move(stop))
    , m_loop(pa_threaded_mainloop_new())
{
    if (!m_loop) {
        throw pulseError(QStringLiteral("無法連線到聲音伺服器"), PA_ERR_INTERNAL);
    }
    pa_threaded_mainloop_set_name(m_loop.get(), "sound-server");
    connect();
}

PulseConnection::~PulseConnection() = default;

void PulseConnection::connect()
{
    {
        const LoopLock lock(m_loop.get());
        pa_context *context = pa_context_new(pa_threaded_mainloop_get_api(m_loop.get()), "Lumaphone");
        if (!context) {
            throw pulseError(QStringLiteral("無法連線到聲音伺服器"), PA_ERR_INTERNAL);
        }
        m_context = {context, ContextDeleter {m_loop.get()}};
        pa_context_set_state_callback(
            context,
            [](pa_context *, void *userData) { static_cast<PulseConnection *>(userData)->takeState(); },
            this);
        if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
            throw pulseError(QStringLiteral("無法連線到聲音伺服器"), pa_context_errno(context));
        }
        if (pa_threaded_mainloop_start(m_loop.get()) < 0) {
            throw pulseError(QStringLiteral("無法連線到聲音伺服器"), PA_ERR_INTERNAL);
        }
    }
    waitForAnswer([this] { return m_isReady || m_isLost; });
    throwIfLost();
}

void PulseConnection::takeState()
{
    const pa_context_state_t state = pa_context_get_state(m_context.get());
    const int code = pa_context_errno(m_context.get());
    change([&] {
        if (state == PA_CONTEXT_READY) {
            m_isReady = true;
        } else if (!PA_CONTEXT_IS_GOOD(state)) {
            m_isLost = true;
            m_lossCode = code;
        }
    });
}

bool PulseConnection::isLost() const
{
    const std::lock_guard lock(m_mutex);
    return m_isLost;
}

void PulseConnection::throwIfLost() const
{
    // A dying connection first ends its streams: under this lock it is dead or alive.
    const LoopLock loopLock(m_loop.get());
    const std::lock_guard lock(m_mutex);
    if (m_isLost) {
        throw pulseError(
            m_isReady ? QStringLiteral("與聲音伺服器的連線已中斷") : QStringLiteral("無法連線到聲音伺服器"),
            m_lossCode);
    }
}

void PulseConnection::change(const std::function<void()> &update)
{
    {
        const std::lock_guard lock(m_mutex);
        update();
    }
    m_changed.notify_all();
}

bool PulseConnection::waitUntil(
    const std::function<bool()> &condition, std::optional<std::chrono::milliseconds> limit)
{
    bool holds = false;
    const auto isOver = [&] {
        holds = condition();
        return holds || m_isLost;
    };
    {
        std::unique_lock lock(m_mutex);
        if (limit) {
            m_changed.wait_for(lock, m_stop, *limit, isOver);
        } else {
            m_changed.wait(lock, m_stop, isOver);
        }
    }
    if (m_stop.stop_requested()) {
        throw CaptureServiceError(QStringLiteral("聲音擷取已取消。"));
    }
    if (!holds) {
        throwIfLost();
    }
    return holds;
}

void PulseConnection::waitForAnswer(const std::function<bool()> &condition)
{
    if (!waitUntil(condition, m_options.timeLimit)) {
        throw pulseError(QStringLiteral("聲音伺服器沒有回應"), PA_ERR_TIMEOUT);
    }
}

void PulseConnection::ask(
    Reply &reply, const std::function<pa_operation *()> &start, const std::function<bool()> &isVoid)
{
    const auto begin = [&] {
        const LoopLock lock(m_loop.get());
        throwIfLost();
        pa_operation *operation = start();
        if (!operation) {
            throw pulseError(QStringLiteral("聲音伺服器拒絕了要求"), pa_context_errno(m_context.get()));
        }
        return operation;
    };
    const OperationGuard operation(m_loop.get(), begin());
    waitForAnswer([&] { return reply.hasArrived || (isVoid && isVoid()); });
    if (!reply.hasArrived) {
        throw pulseError(QStringLiteral("聲音伺服器拒絕了要求"), PA_ERR_KILLED);
    }
    if (reply.error != 0) {
        throw pulseError(QStringLiteral("聲音伺服器拒絕了要求"), reply.error);
    }
}

template<typename Row, typename Start> std::vector<Row> PulseConnection::list(Start start)
{
    ListReply<Row> reply {{*this}, {}};
    ask(reply, [&] { return start(m_context.get(), &reply); });
    return std::move(reply.rows);
}

PulseConnection::ServerReply PulseConnection::askServer()
{
    ServerReply reply {{*this}, {}, {}, {}};
    const auto take = [](pa_context *context, const pa_server_info *info, void *userData) {
        auto &answer = *static_cast<ServerReply *>(userData);
        if (info) {
            answer.name
                = QStringLiteral("%1 %2")
                      .arg(QString::fromUtf8(info->server_name), QString::fromUtf8(info->server_version))
                      .trimmed();
            answer.sink = defaultName(info->default_sink_name);
            answer.source = defaultName(info->default_source_name);
        }
        answer.arrive(info ? 0 : pa_context_errno(context));
    };
    ask(reply, [&] { return pa_context_get_server_info(m_context.get(), take, &reply); });
    return reply;
}

QString PulseConnection::serverName()
{
    return askServer().name;
}

std::string PulseConnection::defaultSinkName()
{
    return askServer().sink;
}

std::string PulseConnection::defaultSourceName()
{
    return askServer().source;
}

std::vector<PulseSink> PulseConnection::sinks()
{
    return list<PulseSink>([](pa_context *context, void *reply) {
        return pa_context_get_sink_info_list(context, takeRow<PulseSink, pa_sink_info>, reply);
    });
}

std::vector<PulseSource> PulseConnection::sources()
{
    return list<PulseSource>([](pa_context *context, void *reply) {
        return pa_context_get_source_info_list(context, takeRow<PulseSource, pa_source_info>, reply);
    });
}

std::optional<PulseSink> PulseConnection::sink(const std::string &name)
{
    return firstOf(list<PulseSink>([&](pa_context *context, void *reply) {
        return pa_context_get_sink_info_by_name(
            context, name.c_str(), takeRow<PulseSink, pa_sink_info>, reply);
    }));
}

std::optional<PulseSource> PulseConnection::source(const std::string &name)
{
    return firstOf(list<PulseSource>([&](pa_context *context, void *reply) {
        return pa_context_get_source_info_by_name(
            context, name.c_str(), takeRow<PulseSource, pa_source_info>, reply);
    }));
}

std::optional<PulseSource> PulseConnection::source(std::uint32_t index)
{
    return firstOf(list<PulseSource>([&](pa_context *context, void *reply) {
        return pa_context_get_source_info_by_index(
            context, index, takeRow<PulseSource, pa_source_info>, reply);
    }));
}

std::unique_ptr<PulseConnection::Watch> PulseConnection::watch(std::uint32_t mask, EventHandler onEvent)
{
    std::unique_ptr<Watch> watch(new Watch(*this, mask, std::move(onEvent)));
    if ((m_watched & mask) == mask) {
        return watch;
    }
    Reply reply {*this};
    const auto takeSuccess = [](pa_context *context, int success, void *userData) {
        static_cast<Reply *>(userData)->arrive(success ? 0 : pa_context_errno(context));
    };
    const std::uint32_t wanted = m_watched | mask;
    ask(reply, [&] {
        pa_context_set_subscribe_callback(
            m_context.get(),
            [](pa_context *, pa_subscription_event_type_t event, std::uint32_t index, void *self) {
                static_cast<const PulseConnection *>(self)->takeEvent(event, index);
            },
            this);
        return pa_context_subscribe(
            m_context.get(), static_cast<pa_subscription_mask_t>(wanted), takeSuccess, &reply);
    });
    m_watched = wanted;
    return watch;
}

void PulseConnection::takeEvent(pa_subscription_event_type_t event, std::uint32_t index) const
{
    for (const Watch *watch : m_watches) {
        if (pa_subscription_match_flags(watch->m_mask, event)) {
            watch->m_onEvent(event, index);
        }
    }
}

PulseConnection::Watch::Watch(PulseConnection &connection, std::uint32_t mask, EventHandler onEvent)
    : m_connection(connection)
    , m_mask(mask)
    , m_onEvent(std::move(onEvent))
{
    const LoopLock lock(m_connection.loop());
    m_connection.m_watches.push_back(this);
}

PulseConnection::Watch::~Watch()
{
    const LoopLock lock(m_connection.loop());
    std::erase(m_connection.m_watches, this);
}

} // namespace lumaphone
