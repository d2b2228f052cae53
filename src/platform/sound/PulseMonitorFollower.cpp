#include "platform/sound/PulseMonitorFollower.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace lumaphone {

using namespace std::chrono_literals;

namespace {

/// How long the server may take to name the successor of an output that has gone.
constexpr std::chrono::milliseconds successionLimit = 1s;
/// How often a default is asked for that the server may not have told of.
constexpr std::chrono::milliseconds inquiryInterval = 1s;
/// The same while there is nothing to record.
constexpr std::chrono::milliseconds searchInterval = 250ms;

QString readable(const std::string &name)
{
    return QString::fromStdString(name);
}

} // namespace

PulseMonitorFollower::PulseMonitorFollower(const PulseOptions &options, std::stop_token stop,
    const pa_sample_spec &sampleSpec, PulseRecorder::Sink sink, AwaitedHandler onAwaited)
    : m_options(options)
    , m_stop(std::move(stop))
    , m_connection(m_options, m_stop)
    , m_isPipeWire(m_connection.serverName().contains(u"PipeWire"))
    , m_sampleSpec(sampleSpec)
    , m_sink(std::move(sink))
    , m_onAwaited(std::move(onAwaited))
{
}

void PulseMonitorFollower::start(const std::string &sinkName)
{
    // Opening a stream causes events of its own; only the server's own entry tells of a new default. Where
    // PipeWire keeps that to itself, the streams that move along give it away.
    const std::uint32_t followers
        = m_isPipeWire ? PA_SUBSCRIPTION_MASK_SINK_INPUT : PA_SUBSCRIPTION_MASK_NULL;
    m_watch = m_connection.watch(PA_SUBSCRIPTION_MASK_SERVER | PA_SUBSCRIPTION_MASK_SINK | followers,
        [this](pa_subscription_event_type_t event, std::uint32_t) {
            const auto facility = event & PA_SUBSCRIPTION_EVENT_FACILITY_MASK;
            const auto kind = event & PA_SUBSCRIPTION_EVENT_TYPE_MASK;
            m_connection.change([&] {
                if (facility == PA_SUBSCRIPTION_EVENT_SERVER) {
                    m_defaultMayHaveChanged = true;
                } else if (facility == PA_SUBSCRIPTION_EVENT_SINK && kind != PA_SUBSCRIPTION_EVENT_CHANGE) {
                    m_outputsMayHaveChanged = true;
                } else {
                    m_hasStirred = true;
                }
            });
        });
    record(sinkName);
}

void PulseMonitorFollower::follow()
{
    const auto hasNews = [this] {
        return m_defaultMayHaveChanged || m_outputsMayHaveChanged || m_recorder->hasEnded();
    };
    for (;;) {
        m_connection.waitUntil([&] { return hasNews() || m_hasStirred; }, inquiryInterval);
        if (m_connection.waitUntil(hasNews, 0ms) || hasUntoldDefault()) {
            goToDefault();
            prepareOthers();
        }
    }
}

void PulseMonitorFollower::goToDefault()
{
    const auto beginning = std::chrono::steady_clock::now();
    bool isAwaited = false;
    for (;;) {
        const std::string name = currentDefault();
        if (!m_recorder->hasEnded() && (name == m_sinkName || name.empty())) {
            return;
        }
        QString reason;
        try {
            record(name);
            if (isAwaited) {
                m_onAwaited(std::nullopt);
            }
            return;
        } catch (const CaptureServiceError &error) {
            reason = error.errorDescription();
        }
        // Perhaps the server is in the middle of a change and will name another output.
        if (waitForChange(beginning + successionLimit)) {
            continue;
        }
        if (!hasOutputGone()) {
            throw CaptureServiceError(reason);
        }
        if (!std::exchange(isAwaited, true)) {
            m_onAwaited(m_sinkTitle);
        }
        if (!waitForChange(beginning + m_options.returnLimit)) {
            throw CaptureServiceError(QStringLiteral("等不到聲音輸出「%1」回來。").arg(m_sinkTitle) + reason);
        }
    }
}

/// Not so if the server has ended the recording of an output that is still there.
bool PulseMonitorFollower::hasOutputGone()
{
    const auto sinks = m_connection.sinks();
    return m_recorder->hasEnded() && std::none_of(sinks.begin(), sinks.end(), [this](const PulseSink &sink) {
        return sink.index == m_recorder->source().monitorOfSink;
    });
}

/// Of the outputs or the default, or until it is time to look again; false once the deadline has passed.
bool PulseMonitorFollower::waitForChange(std::chrono::steady_clock::time_point deadline)
{
    const auto rest
        = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (rest.count() <= 0) {
        return false;
    }
    m_connection.waitUntil([this] { return m_defaultMayHaveChanged || m_outputsMayHaveChanged; },
        std::min(rest, searchInterval));
    return true;
}

std::string PulseMonitorFollower::currentDefault()
{
    m_connection.change([this] {
        m_defaultMayHaveChanged = false;
        m_outputsMayHaveChanged = false;
    });
    return askForDefault();
}

/// PipeWire 0.3 now and then leaves a connection with a default that was, for good; a new one is told the
/// truth.
std::string PulseMonitorFollower::askForDefault()
{
    if (m_isPipeWire) {
        try {
            return PulseConnection(m_options, m_stop).defaultSinkName();
        } catch (const CaptureServiceError &) {
            // If the server has gone, the old connection knows it best.
        }
    }
    return m_connection.defaultSinkName();
}

/// False as well if the server gives no answer: while sound flows, that ends nothing.
bool PulseMonitorFollower::hasUntoldDefault()
{
    m_connection.change([this] { m_hasStirred = false; });
    if (!m_isPipeWire) {
        return false;
    }
    try {
        const std::string name = askForDefault();
        return !name.empty() && name != m_sinkName;
    } catch (const CaptureServiceError &) {
        return false;
    }
}

/// The new monitor is open and checked before the old one is closed.
void PulseMonitorFollower::record(const std::string &sinkName)
{
    const PulseSink sink = sinkNamed(sinkName);
    const PulseSource monitor = monitorOf(sink);
    if (m_recorder && m_recorder->hasEnded() && m_recorder->source().index == monitor.index) {
        throw CaptureServiceError(
            QStringLiteral("聲音伺服器中止了聲音輸出「%1」的錄音。").arg(readable(sinkName)));
    }
    std::unique_ptr<PulseRecorder> recorder = recorderOf(monitor);
    recorder->start();
    m_recorder = std::move(recorder);
    m_sinkName = sinkName;
    m_sinkTitle = readable(sink.description.empty() ? sinkName : sink.description);
    m_connection.change([this] { m_outputsMayHaveChanged = true; });
}

/// The one prepared, or one made now.
std::unique_ptr<PulseRecorder> PulseMonitorFollower::recorderOf(const PulseSource &monitor)
{
    const auto prepared = std::find_if(m_prepared.begin(), m_prepared.end(), [&](const auto &recorder) {
        return recorder->source().index == monitor.index && !recorder->hasEnded();
    });
    if (prepared == m_prepared.end()) {
        return std::make_unique<PulseRecorder>(m_connection, monitor, m_sampleSpec, m_sink);
    }
    std::unique_ptr<PulseRecorder> recorder = std::move(*prepared);
    m_prepared.erase(prepared);
    return recorder;
}

void PulseMonitorFollower::prepareOthers()
{
    m_connection.change([this] { m_outputsMayHaveChanged = false; });
    std::erase_if(m_prepared, [](const auto &recorder) { return recorder->hasEnded(); });
    for (const PulseSink &sink : m_connection.sinks()) {
        const bool isKnown = sink.index == m_recorder->source().monitorOfSink
            || std::any_of(m_prepared.begin(), m_prepared.end(),
                [&](const auto &recorder) { return recorder->source().monitorOfSink == sink.index; });
        if (isKnown) {
            continue;
        }
        try {
            m_prepared.push_back(
                std::make_unique<PulseRecorder>(m_connection, monitorOf(sink), m_sampleSpec, m_sink));
        } catch (const CaptureServiceError &) {
            // An output that cannot be recorded matters once it is the default, and is asked again then.
            m_connection.throwIfLost();
        }
    }
}

PulseSink PulseMonitorFollower::sinkNamed(const std::string &name)
{
    if (name.empty()) {
        throw CaptureServiceError(QStringLiteral("已經沒有任何聲音輸出。"));
    }
    std::optional<PulseSink> sink = m_connection.sink(name);
    if (!sink || sink->name != name) {
        throw CaptureServiceError(QStringLiteral("找不到聲音輸出「%1」。").arg(readable(name)));
    }
    return *std::move(sink);
}

/// By name and by index, both ways: what is found under a monitor's name must record this very output.
PulseSource PulseMonitorFollower::monitorOf(const PulseSink &sink)
{
    const std::optional<PulseSource> monitor
        = sink.monitorName.empty() ? std::nullopt : m_connection.source(sink.monitorName);
    if (!monitor || monitor->name != sink.monitorName || monitor->monitorOfSink != sink.index) {
        throw CaptureServiceError(
            QStringLiteral("聲音輸出「%1」無法錄製：找不到它的監聽來源。").arg(readable(sink.name)));
    }
    return *monitor;
}

} // namespace lumaphone
