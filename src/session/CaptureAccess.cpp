#include "session/CaptureAccess.h"

#include "session/SessionTexts.h"

namespace lumaphone {

namespace {

using namespace std::chrono_literals;
using SayStatus = std::function<void(const QString &)>;

constexpr int checks = 24;
constexpr std::chrono::nanoseconds timeBetweenChecks = 250ms;

QCoro::Task<bool> requestScreenAudio(
    std::shared_ptr<ScreenAudioCapture> capture, std::shared_ptr<Clock> clock, SayStatus sayStatus)
{
    using enum LumaphoneAudioInputSource;
    if (capture->preflightAccess()) {
        co_return true;
    }
    sayStatus(texts::requestingAccess(systemAudio));
    capture->requestAccess();
    for (int check = 0; check < checks; ++check) {
        co_await clock->sleepFor(timeBetweenChecks);
        if (capture->preflightAccess()) {
            sayStatus(texts::accessGranted(systemAudio));
            co_return true;
        }
    }
    sayStatus(texts::accessNotGranted(systemAudio));
    co_return false;
}

QCoro::Task<bool> requestMicrophone(std::shared_ptr<MicrophoneCapture> capture, SayStatus sayStatus)
{
    using enum LumaphoneAudioInputSource;
    sayStatus(texts::requestingAccess(microphone));
    const bool isGranted = co_await capture->requestAccess();
    sayStatus(isGranted ? texts::accessGranted(microphone) : texts::accessNotGranted(microphone));
    co_return isGranted;
}

} // namespace

CaptureAccess::CaptureAccess(std::shared_ptr<ScreenAudioCapture> screenAudio,
    std::shared_ptr<MicrophoneCapture> microphone, std::shared_ptr<Clock> clock)
    : m_screenAudio(std::move(screenAudio))
    , m_microphone(std::move(microphone))
    , m_clock(std::move(clock))
{
}

QCoro::Task<bool> CaptureAccess::request(LumaphoneAudioInputSource source, SayStatus sayStatus) const
{
    switch (source) {
    case LumaphoneAudioInputSource::systemAudio:
        return requestScreenAudio(m_screenAudio, m_clock, std::move(sayStatus));
    case LumaphoneAudioInputSource::microphone:
        return requestMicrophone(m_microphone, std::move(sayStatus));
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
