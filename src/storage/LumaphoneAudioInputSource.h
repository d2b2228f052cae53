#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lumaphone {

/// Where the sound comes from.
enum class LumaphoneAudioInputSource {
    systemAudio, ///< what the computer plays
    microphone,
};

/// All cases, in the order of menus.
inline constexpr std::array allLumaphoneAudioInputSources {
    LumaphoneAudioInputSource::systemAudio,
    LumaphoneAudioInputSource::microphone,
};

/// The stored form and identity, such as "systemAudio".
QString rawValue(LumaphoneAudioInputSource value);
/// Exact and case-sensitive; none for any other text.
std::optional<LumaphoneAudioInputSource> lumaphoneAudioInputSource(const QString &rawValue);
/// Label for menus.
QString title(LumaphoneAudioInputSource value);
/// The name of the symbol shown with the title.
QString symbolName(LumaphoneAudioInputSource value);

} // namespace lumaphone
