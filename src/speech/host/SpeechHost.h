#pragma once

#include "speech/host/DecodePlan.h"
#include "speech/host/HostConnection.h"
#include "speech/host/SegmentDecoder.h"
#include "speech/host/SourcePace.h"
#include "speech/host/SpeechRuntime.h"
#include "speech/host/VoiceDetector.h"

#include <condition_variable>
#include <thread>

namespace lumaphone::host {

/// Turns the program's sound into texts: one thread takes sound and cuts segments, another decodes them.
class SpeechHost
{
public:
    explicit SpeechHost(HostConnection &connection);
    ~SpeechHost();

    /// Serves the program until it goes or a decode fails. Throws HostFailure and WireError.
    void run();

private:
    using Clock = std::chrono::steady_clock;

    struct LastDecode
    {
        DecodePlan::Extent extent;
        Hearing hearing;
        std::uint32_t milliseconds;
    };

    void load(const Configure &configuration);
    std::unique_ptr<SegmentDecoder> makeDecoder(const Network &network, const Configure &configuration);

    // The receiving thread.
    void accept(const Sound &sound);
    void acceptWindow();
    void take(Segmenter::Outcome outcome);
    void waitForRoom();
    void reportSettled();
    void finish();

    // The decoding thread.
    void decodeJobs();
    void decode(const DecodePlan::Volatile &job, std::unique_lock<std::mutex> &lock);
    void decode(const DecodePlan::Final &job, std::unique_lock<std::mutex> &lock);
    LastDecode hear(SegmentDecoder &decoder, const SpeechSegment &segment, const DecodePlan::Extent &extent,
        bool isComplete);
    void report(const SpeechSegment &segment, const LastDecode &decode, bool isFinal);
    std::int64_t settledPosition() const;

    HostConnection &m_connection;
    std::unique_ptr<SpeechRuntime> m_runtime;
    std::unique_ptr<VoiceDetector> m_voiceDetector;
    std::unique_ptr<SegmentDecoder> m_decoder;
    std::unique_ptr<SegmentDecoder> m_volatileDecoder; ///< none: m_decoder serves volatile texts too

    std::optional<Segmenter>
        m_segmenter; ///< since the first sound; changed by the receiving thread under m_mutex
    std::vector<float> m_window; ///< less than one
    std::int64_t m_reportedSettled = 0;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    DecodePlan m_plan;
    SourcePace m_pace;
    bool m_isEnding = false; ///< no more segments come
    bool m_isAbandoned = false; ///< the decoder has nothing more to do
    bool m_hasFailed = false; ///< the decoding thread, which has told so
    std::thread m_decoding;

    /// Of the network that serves final texts; the decoding thread's own.
    std::optional<LastDecode> m_lastDecode;
};

} // namespace lumaphone::host
