#include "storage/LumaphoneAudioInputSource.h"

#include "base/RawValue.h"

namespace lumaphone {

using enum LumaphoneAudioInputSource;

QString rawValue(LumaphoneAudioInputSource value)
{
    switch (value) {
    case systemAudio:
        return QStringLiteral("systemAudio");
    case microphone:
        return QStringLiteral("microphone");
    }
    Q_UNREACHABLE();
}

std::optional<LumaphoneAudioInputSource> lumaphoneAudioInputSource(const QString &raw)
{
    return caseWithRawValue(allLumaphoneAudioInputSources, raw);
}

QString title(LumaphoneAudioInputSource value)
{
    switch (value) {
    case systemAudio:
        return QStringLiteral("系統音訊");
    case microphone:
        return QStringLiteral("麥克風");
    }
    Q_UNREACHABLE();
}

QString symbolName(LumaphoneAudioInputSource value)
{
    switch (value) {
    case systemAudio:
        return QStringLiteral("speaker.wave.2.fill");
    case microphone:
        return QStringLiteral("mic.fill");
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
