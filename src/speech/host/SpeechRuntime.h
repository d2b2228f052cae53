#pragma once

#include "speech/protocol/RuntimeVersion.h"

#include <cstdint>
#include <memory>

namespace lumaphone::host {

/// The functions of the runtime library, by their C interface. Objects of the library are opaque.
class SpeechRuntime
{
public:
    /// Loads the library in a folder, which also holds the library it needs. Throws HostFailure
    /// (runtimeMissing, runtimeVersion).
    explicit SpeechRuntime(const std::string &folder);
    ~SpeechRuntime();
    SpeechRuntime(const SpeechRuntime &) = delete;
    SpeechRuntime &operator=(const SpeechRuntime &) = delete;

    const std::string &version() const { return m_version; }

    using Object = void *;
    using ConstObject = const void *;
    /// An object together with the function that destroys it.
    using Handle = std::unique_ptr<const void, void (*)(ConstObject)>;

    ConstObject (*createOfflineRecognizer)(const void *configuration);
    void (*destroyOfflineRecognizer)(ConstObject recognizer);
    ConstObject (*createOfflineStream)(ConstObject recognizer);
    void (*destroyOfflineStream)(ConstObject stream);
    void (*acceptWaveformOffline)(
        ConstObject stream, std::int32_t rateHz, const float *samples, std::int32_t n);
    void (*decodeOfflineStream)(ConstObject recognizer, ConstObject stream);
    ConstObject (*getOfflineStreamResult)(ConstObject stream);
    void (*destroyOfflineRecognizerResult)(ConstObject result);

    ConstObject (*createOnlineRecognizer)(const void *configuration);
    void (*destroyOnlineRecognizer)(ConstObject recognizer);
    ConstObject (*createOnlineStream)(ConstObject recognizer);
    void (*destroyOnlineStream)(ConstObject stream);
    void (*onlineStreamAcceptWaveform)(
        ConstObject stream, std::int32_t rateHz, const float *samples, std::int32_t n);
    std::int32_t (*isOnlineStreamReady)(ConstObject recognizer, ConstObject stream);
    void (*decodeOnlineStream)(ConstObject recognizer, ConstObject stream);
    ConstObject (*getOnlineStreamResult)(ConstObject recognizer, ConstObject stream);
    void (*destroyOnlineRecognizerResult)(ConstObject result);
    void (*onlineStreamInputFinished)(ConstObject stream);

    ConstObject (*createVoiceActivityDetector)(const void *configuration, float bufferSeconds);
    void (*destroyVoiceActivityDetector)(ConstObject detector);
    void (*voiceActivityDetectorAcceptWaveform)(ConstObject detector, const float *samples, std::int32_t n);
    std::int32_t (*voiceActivityDetectorDetected)(ConstObject detector);
    std::int32_t (*voiceActivityDetectorEmpty)(ConstObject detector);
    void (*voiceActivityDetectorPop)(ConstObject detector);
    void (*voiceActivityDetectorFlush)(ConstObject detector);

private:
    struct Closer
    {
        void operator()(void *library) const;
    };

    template<typename Function> void resolve(Function &function, const char *name);
    void checkVersion();

    std::unique_ptr<void, Closer> m_library;
    std::string m_version;
};

} // namespace lumaphone::host
