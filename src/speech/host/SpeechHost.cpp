#include "speech/host/SpeechHost.h"

#include "speech/host/HostFailure.h"
#include "speech/host/OfflineNetwork.h"
#include "speech/host/StreamingNetwork.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace lumaphone::host {

namespace {

// Of a source that can wait, so many segments may wait for the decoder.
constexpr std::size_t pendingOfPatientSource = 2;
// Of any source, so much sound: a machine that is too slow for good must not fall behind for ever.
constexpr std::int64_t longestPending = 20 * samplesPerSecond;
// In silence, how often the program hears that nothing is pending.
constexpr std::int64_t settledInterval = samplesPerSecond;

constexpr std::size_t closingSilence = samplesPerSecond / 4;

constexpr float fullScale = 32768.F;

/// The library cannot tell a file that must not be read from a damaged one, and may end the process for it.
void demandPermission(const std::string &path)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file >= 0) {
        ::close(file);
    } else if (errno == EACCES || errno == EPERM) {
        throw HostFailure(FailureKind::permission, path);
    }
}

void demandPermission(const Network &network)
{
    std::for_each(
        network.files.begin(), network.files.end(), [](const std::string &path) { demandPermission(path); });
    demandPermission(network.tokens);
}

} // namespace

SpeechHost::SpeechHost(HostConnection &connection)
    : m_connection(connection)
{
}

SpeechHost::~SpeechHost()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isAbandoned = true;
    }
    m_changed.notify_all();
    if (m_decoding.joinable()) {
        m_decoding.join();
    }
}

void SpeechHost::run()
{
    const auto first = m_connection.receive();
    if (!first) {
        return;
    }
    const auto *const configuration = std::get_if<Configure>(&*first);
    if (configuration == nullptr || configuration->version != protocolVersion) {
        throw HostFailure(FailureKind::protocol, "the program speaks another version of the protocol");
    }
    load(*configuration);
    m_decoding = std::thread([this] { decodeJobs(); });
    while (const auto request = m_connection.receive()) {
        if (const auto *const sound = std::get_if<Sound>(&*request)) {
            accept(*sound);
        } else if (std::holds_alternative<EndOfSound>(*request)) {
            finish();
        } else {
            throw HostFailure(FailureKind::protocol, "configured twice");
        }
        const std::lock_guard lock(m_mutex);
        if (m_hasFailed) {
            return;
        }
    }
}

void SpeechHost::load(const Configure &configuration)
{
    m_connection.send(Loading {LoadStage::runtime});
    m_runtime = std::make_unique<SpeechRuntime>(configuration.runtimeFolder);
    m_connection.send(Loading {LoadStage::voiceDetector});
    demandPermission(configuration.voiceDetector);
    m_voiceDetector = std::make_unique<VoiceDetector>(*m_runtime, configuration.voiceDetector,
        static_cast<float>(std::clamp(configuration.voiceThreshold, 1U, 999U)) / 1000.F);
    m_connection.send(Loading {LoadStage::network});
    m_decoder = makeDecoder(configuration.network, configuration);
    if (configuration.volatileNetwork) {
        m_connection.send(Loading {LoadStage::volatileNetwork});
        m_volatileDecoder = makeDecoder(*configuration.volatileNetwork, configuration);
    }
    // Some damage shows only when a network is used.
    m_decoder->decode(0, std::vector<float>(samplesPerSecond), true);
    m_connection.send(Ready {m_runtime->version()});
}

std::unique_ptr<SegmentDecoder> SpeechHost::makeDecoder(
    const Network &network, const Configure &configuration)
{
    demandPermission(network);
    const int threads = static_cast<int>(std::clamp(configuration.threads, 1U, 8U));
    switch (network.kind) {
    case NetworkKind::senseVoice:
    case NetworkKind::moonshine:
        return std::make_unique<OfflineNetwork>(*m_runtime, network, configuration.language, threads);
    case NetworkKind::streamingCtc:
    case NetworkKind::streamingTransducer:
        return std::make_unique<StreamingNetwork>(*m_runtime, network, threads);
    }
    throw HostFailure(FailureKind::protocol, "a network of unknown kind");
}

void SpeechHost::accept(const Sound &sound)
{
    if (!m_segmenter) {
        const std::lock_guard lock(m_mutex);
        m_segmenter.emplace(sound.position);
        m_reportedSettled = sound.position;
    }
    if (sound.position != m_segmenter->position() + static_cast<std::int64_t>(m_window.size())) {
        throw HostFailure(FailureKind::protocol, "sound is missing");
    }
    {
        const std::lock_guard lock(m_mutex);
        m_pace.arrived(static_cast<std::int64_t>(sound.samples.size()), Clock::now());
    }
    for (const std::int16_t sample : sound.samples) {
        m_window.push_back(static_cast<float>(sample) / fullScale);
        if (m_window.size() == VoiceDetector::windowSize) {
            acceptWindow();
            m_window.clear();
        }
    }
    reportSettled();
}

void SpeechHost::acceptWindow()
{
    const bool isSpeech = m_voiceDetector->isSpeech(m_window);
    bool hasCutSpeech = false;
    {
        const std::lock_guard lock(m_mutex);
        const Clock::time_point now = Clock::now();
        const bool isHurried = !m_pace.isAheadOfTime(now) && m_plan.wantsEarlyClosing(now);
        m_segmenter->setLimits(isHurried ? Segmenter::hurriedLimits : Segmenter::unhurriedLimits);
        take(m_segmenter->accept(m_window, isSpeech));
        hasCutSpeech = m_segmenter->hasCutSpeech();
    }
    m_changed.notify_all();
    if (hasCutSpeech) {
        m_voiceDetector->forgetSound();
    }
    waitForRoom();
}

void SpeechHost::take(Segmenter::Outcome outcome)
{
    if (auto *const closed = std::get_if<Segmenter::Closed>(&outcome)) {
        m_connection.send(Closed {closed->segment.start, closed->segment.end()});
        m_plan.closed(std::move(closed->segment), Clock::now());
    }
    if (const SpeechSegment *const open = m_segmenter->open()) {
        m_plan.opened({open->start, open->voiced, m_segmenter->silence()}, Clock::now());
    } else {
        m_plan.nothingOpen();
    }
}

void SpeechHost::waitForRoom()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] {
        if (m_hasFailed || m_plan.pendingFinals() < pendingOfPatientSource) {
            return true;
        }
        return !m_pace.isAheadOfTime(Clock::now()) && m_plan.pendingSamples() < longestPending;
    });
}

void SpeechHost::reportSettled()
{
    std::int64_t settled = 0;
    {
        const std::lock_guard lock(m_mutex);
        settled = settledPosition();
    }
    if (settled >= m_reportedSettled + settledInterval) {
        m_reportedSettled = settled;
        m_connection.send(Settled {settled});
    }
}

std::int64_t SpeechHost::settledPosition() const
{
    return std::min(
        m_plan.oldestPending().value_or(m_segmenter->settledPosition()), m_segmenter->settledPosition());
}

void SpeechHost::finish()
{
    std::unique_lock lock(m_mutex);
    if (m_segmenter) {
        // Networks expect a little silence behind the last word.
        m_window.resize(m_window.size() + closingSilence);
        take(m_segmenter->accept(m_window, false));
        take(m_segmenter->finish());
    }
    m_isEnding = true;
    m_changed.notify_all();
}

void SpeechHost::decodeJobs()
{
    try {
        std::unique_lock lock(m_mutex);
        while (!m_isAbandoned) {
            const DecodePlan::Job job = m_plan.next(Clock::now());
            if (const auto *const whole = std::get_if<DecodePlan::Final>(&job)) {
                decode(*whole, lock);
            } else if (const auto *const part = std::get_if<DecodePlan::Volatile>(&job)) {
                decode(*part, lock);
            } else if (m_isEnding) {
                break;
            } else if (const auto until = std::get<DecodePlan::Nothing>(job).until) {
                m_changed.wait_until(lock, *until);
            } else {
                m_changed.wait(lock);
            }
        }
        lock.unlock();
        m_connection.send(Finished {});
    } catch (const HostFailure &failure) {
        m_connection.send(Failure {failure.kind(), failure.what()});
        const std::lock_guard lock(m_mutex);
        m_hasFailed = true;
    }
    m_changed.notify_all();
}

void SpeechHost::decode(const DecodePlan::Volatile &job, std::unique_lock<std::mutex> &lock)
{
    const SpeechSegment *const open = m_segmenter->open();
    if (open == nullptr || open->start != job.start) {
        m_plan.done(Clock::now());
        return;
    }
    const SpeechSegment segment = *open;
    const DecodePlan::Extent extent {segment.start, segment.voiced, m_segmenter->silence()};
    lock.unlock();
    LastDecode decode = hear(m_volatileDecoder ? *m_volatileDecoder : *m_decoder, segment, extent, false);
    report(segment, decode, false);
    if (!m_volatileDecoder && m_decoder->hearsFromTheStart()) {
        m_lastDecode = std::move(decode);
    }
    lock.lock();
    m_plan.done(Clock::now());
}

void SpeechHost::decode(const DecodePlan::Final &job, std::unique_lock<std::mutex> &lock)
{
    lock.unlock();
    // What was decoded when the pause began need not be decoded again at its end, if it said anything.
    if (!m_lastDecode || !m_lastDecode->extent.isWholeOf(job.segment) || m_lastDecode->hearing.text.empty()) {
        m_lastDecode = hear(*m_decoder, job.segment, {}, true);
    }
    report(job.segment, *m_lastDecode, true);
    m_lastDecode.reset();
    lock.lock();
    m_plan.done(Clock::now());
    const std::int64_t settled = settledPosition();
    lock.unlock();
    m_connection.send(Settled {settled});
    m_changed.notify_all();
    lock.lock();
}

SpeechHost::LastDecode SpeechHost::hear(
    SegmentDecoder &decoder, const SpeechSegment &segment, const DecodePlan::Extent &extent, bool isComplete)
{
    const Clock::time_point started = Clock::now();
    Hearing hearing = decoder.decode(segment.start, segment.samples, isComplete);
    const auto duration = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started);
    return {extent, std::move(hearing), static_cast<std::uint32_t>(duration.count())};
}

void SpeechHost::report(const SpeechSegment &segment, const LastDecode &decode, bool isFinal)
{
    m_connection.send(Decoded {segment.start, segment.end(), segment.voiced, isFinal, segment.continuesSpeech,
        segment.isCut, decode.milliseconds, decode.hearing.language, decode.hearing.event,
        decode.hearing.text});
}

} // namespace lumaphone::host
