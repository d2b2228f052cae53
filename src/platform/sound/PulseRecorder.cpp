#include "platform/sound/PulseRecorder.h"

#include <pulse/error.h>

#include <memory>
#include <utility>

namespace lumaphone {

namespace {
constexpr pa_usec_t fragmentMicroseconds = 20'000;
}

void PulseRecorder::StreamDeleter::operator()(pa_stream *stream) const
{
    const PulseConnection::LoopLock lock(loop);
    pa_stream_set_state_callback(stream, nullptr, nullptr);
    pa_stream_set_moved_callback(stream, nullptr, nullptr);
    pa_stream_set_read_callback(stream, nullptr, nullptr);
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

PulseRecorder::PulseRecorder(
    PulseConnection &connection, PulseSource source, const pa_sample_spec &sampleSpec, Sink sink)
    : m_connection(connection)
    , m_source(std::move(source))
    , m_sink(std::move(sink))
{
    // Some servers leave a recording open, and silent, when its source goes.
    m_watch = m_connection.watch(PA_SUBSCRIPTION_MASK_SOURCE,
        [this](pa_subscription_event_type_t event, std::uint32_t index) { takeEvent(event, index); });
    open(sampleSpec);
    verify(sampleSpec);
}

PulseRecorder::~PulseRecorder()
{
    setAccepting(false);
}

void PulseRecorder::open(const pa_sample_spec &sampleSpec)
{
    {
        const PulseConnection::LoopLock lock(m_connection.loop());
        // With as many channels as the source its own map avoids a remix; otherwise the server mixes down.
        const bool keepsChannels = sampleSpec.channels == m_source.channelMap.channels;
        // PipeWire otherwise adds the channels up, so that what is loud in all of them is cut off.
        const std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)> properties(
            pa_proplist_new(), &pa_proplist_free);
        pa_proplist_sets(properties.get(), "channelmix.normalize", "true");
        pa_stream *stream = pa_stream_new_with_proplist(m_connection.context(), "Lumaphone", &sampleSpec,
            keepsChannels ? &m_source.channelMap : nullptr, properties.get());
        if (!stream) {
            throw pulseError(QStringLiteral("無法開始錄音"), pa_context_errno(m_connection.context()));
        }
        m_stream = {stream, StreamDeleter {m_connection.loop()}};
        pa_stream_set_state_callback(
            stream, [](pa_stream *, void *self) { static_cast<PulseRecorder *>(self)->takeState(); }, this);
        pa_stream_set_moved_callback(
            stream, [](pa_stream *, void *self) { static_cast<PulseRecorder *>(self)->takeMove(); }, this);
        pa_stream_set_read_callback(
            stream,
            [](pa_stream *, std::size_t, void *self) { static_cast<PulseRecorder *>(self)->takeSound(); },
            this);

        const auto unset = static_cast<std::uint32_t>(-1);
        pa_buffer_attr attributes {unset, unset, unset, unset, unset};
        attributes.fragsize = static_cast<std::uint32_t>(pa_usec_to_bytes(fragmentMicroseconds, &sampleSpec));
        const auto flags = static_cast<pa_stream_flags_t>(
            PA_STREAM_START_CORKED | PA_STREAM_DONT_MOVE | PA_STREAM_ADJUST_LATENCY);
        if (pa_stream_connect_record(stream, m_source.name.c_str(), &attributes, flags) < 0) {
            throw pulseError(QStringLiteral("無法開始錄音"), pa_context_errno(m_connection.context()));
        }
    }
    m_connection.waitForAnswer([this] { return m_isReady || m_hasEnded; });
    if (m_hasEnded) {
        const PulseConnection::LoopLock lock(m_connection.loop());
        throw pulseError(QStringLiteral("無法開始錄音"), pa_context_errno(m_connection.context()));
    }
}

/// A server may put a stream on another device than the one asked for, even on a microphone.
void PulseRecorder::verify(const pa_sample_spec &sampleSpec)
{
    std::string actualName;
    std::uint32_t actualIndex = PA_INVALID_INDEX;
    bool hasWantedFormat = false;
    {
        const PulseConnection::LoopLock lock(m_connection.loop());
        const char *name = pa_stream_get_device_name(m_stream.get());
        actualName = name ? name : "";
        actualIndex = pa_stream_get_device_index(m_stream.get());
        hasWantedFormat = pa_sample_spec_equal(pa_stream_get_sample_spec(m_stream.get()), &sampleSpec) != 0;
    }
    const std::optional<PulseSource> actual
        = actualIndex == PA_INVALID_INDEX ? std::nullopt : m_connection.source(actualIndex);
    const bool isWanted = actual && actualIndex == m_source.index && actualName == m_source.name
        && actual->name == m_source.name && actual->monitorOfSink == m_source.monitorOfSink;
    if (!isWanted) {
        throw CaptureServiceError(
            QStringLiteral("聲音伺服器錄到的裝置「%1」不是要求的「%2」，已停止錄音。")
                .arg(QString::fromStdString(actualName), QString::fromStdString(m_source.name)));
    }
    if (!hasWantedFormat) {
        throw CaptureServiceError(QStringLiteral("聲音伺服器沒有提供要求的音訊格式。"));
    }
}

void PulseRecorder::start()
{
    setAccepting(true);
    PulseConnection::Reply reply {m_connection};
    const auto takeSuccess = [](pa_stream *stream, int success, void *userData) {
        static_cast<PulseConnection::Reply *>(userData)->arrive(
            success ? 0 : pa_context_errno(pa_stream_get_context(stream)));
    };
    // The server forgets the request of a stream that it ends meanwhile.
    m_connection.ask(
        reply, [&] { return pa_stream_cork(m_stream.get(), 0, takeSuccess, &reply); },
        [this] { return m_hasEnded.load(); });
}

void PulseRecorder::takeState()
{
    const pa_stream_state_t state = pa_stream_get_state(m_stream.get());
    if (state == PA_STREAM_READY) {
        m_connection.change([this] { m_isReady = true; });
    } else if (!PA_STREAM_IS_GOOD(state)) {
        end();
    }
}

void PulseRecorder::takeMove()
{
    if (pa_stream_get_device_index(m_stream.get()) != m_source.index) {
        setAccepting(false);
        end();
    }
}

void PulseRecorder::takeEvent(pa_subscription_event_type_t event, std::uint32_t index)
{
    const bool isRemoval = (event & PA_SUBSCRIPTION_EVENT_TYPE_MASK) == PA_SUBSCRIPTION_EVENT_REMOVE;
    if (isRemoval && index == m_source.index) {
        setAccepting(false);
        end();
    }
}

void PulseRecorder::takeSound()
{
    const std::lock_guard lock(m_sinkMutex);
    while (pa_stream_readable_size(m_stream.get()) > 0) {
        const void *data = nullptr;
        std::size_t bytes = 0;
        if (pa_stream_peek(m_stream.get(), &data, &bytes) < 0 || bytes == 0) {
            return;
        }
        if (m_isAccepting) {
            m_sink(static_cast<const std::byte *>(data), bytes);
        }
        pa_stream_drop(m_stream.get());
    }
}

void PulseRecorder::end()
{
    m_connection.change([this] { m_hasEnded = true; });
}

void PulseRecorder::setAccepting(bool accepting)
{
    const std::lock_guard lock(m_sinkMutex);
    m_isAccepting = accepting;
}

} // namespace lumaphone
