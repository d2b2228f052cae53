#include "speech/host/SpeechRuntime.h"

#include "speech/host/HostFailure.h"

#include <dlfcn.h>

namespace lumaphone::host {

namespace {

[[noreturn]] void failToLoad()
{
    const char *const reason = ::dlerror();
    throw HostFailure(FailureKind::runtimeMissing, reason == nullptr ? "" : reason);
}

} // namespace

// Unloading it would run its destructors while threads of its own still exist; the process ends soon anyway.
void SpeechRuntime::Closer::operator()(void *) const
{
}

SpeechRuntime::SpeechRuntime(const std::string &folder)
{
    // What the library needs is found among the loaded ones, so that nothing depends on a search path.
    if (::dlopen((folder + "/libonnxruntime.so").c_str(), RTLD_NOW | RTLD_GLOBAL) == nullptr) {
        failToLoad();
    }
    m_library.reset(::dlopen((folder + "/libsherpa-onnx-c-api.so").c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!m_library) {
        failToLoad();
    }
    checkVersion();
    resolve(createOfflineRecognizer, "CreateOfflineRecognizer");
    resolve(destroyOfflineRecognizer, "DestroyOfflineRecognizer");
    resolve(createOfflineStream, "CreateOfflineStream");
    resolve(destroyOfflineStream, "DestroyOfflineStream");
    resolve(acceptWaveformOffline, "AcceptWaveformOffline");
    resolve(decodeOfflineStream, "DecodeOfflineStream");
    resolve(getOfflineStreamResult, "GetOfflineStreamResult");
    resolve(destroyOfflineRecognizerResult, "DestroyOfflineRecognizerResult");
    resolve(createOnlineRecognizer, "CreateOnlineRecognizer");
    resolve(destroyOnlineRecognizer, "DestroyOnlineRecognizer");
    resolve(createOnlineStream, "CreateOnlineStream");
    resolve(destroyOnlineStream, "DestroyOnlineStream");
    resolve(onlineStreamAcceptWaveform, "OnlineStreamAcceptWaveform");
    resolve(isOnlineStreamReady, "IsOnlineStreamReady");
    resolve(decodeOnlineStream, "DecodeOnlineStream");
    resolve(getOnlineStreamResult, "GetOnlineStreamResult");
    resolve(destroyOnlineRecognizerResult, "DestroyOnlineRecognizerResult");
    resolve(onlineStreamInputFinished, "OnlineStreamInputFinished");
    resolve(createVoiceActivityDetector, "CreateVoiceActivityDetector");
    resolve(destroyVoiceActivityDetector, "DestroyVoiceActivityDetector");
    resolve(voiceActivityDetectorAcceptWaveform, "VoiceActivityDetectorAcceptWaveform");
    resolve(voiceActivityDetectorDetected, "VoiceActivityDetectorDetected");
    resolve(voiceActivityDetectorEmpty, "VoiceActivityDetectorEmpty");
    resolve(voiceActivityDetectorPop, "VoiceActivityDetectorPop");
    resolve(voiceActivityDetectorFlush, "VoiceActivityDetectorFlush");
}

SpeechRuntime::~SpeechRuntime() = default;

// Older libraries lay their structures out differently: nothing else may be called before this is known.
void SpeechRuntime::checkVersion()
{
    const char *(*getVersion)() = nullptr;
    resolve(getVersion, "GetVersionStr");
    const char *const text = getVersion();
    m_version = text == nullptr ? "" : text;
    const auto version = parseRuntimeVersion(m_version);
    if (!version || *version < oldestRuntime) {
        throw HostFailure(FailureKind::runtimeVersion, m_version);
    }
}

template<typename Function> void SpeechRuntime::resolve(Function &function, const char *name)
{
    void *const symbol = ::dlsym(m_library.get(), (std::string("SherpaOnnx") + name).c_str());
    if (symbol == nullptr) {
        failToLoad();
    }
    function = reinterpret_cast<Function>(symbol);
}

} // namespace lumaphone::host
