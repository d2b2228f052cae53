#pragma once

#include <QString>

#include <chrono>

namespace lumaphone {

struct PulseOptions
{
    /// How long the sound server may take for one answer.
    std::chrono::milliseconds timeLimit {5000};
    /// How long an output that has gone, such as a headset out of reach, is waited for.
    std::chrono::milliseconds returnLimit {15000};
    /// Exists inside a sandbox only.
    QString sandboxMarkerPath = QStringLiteral("/.flatpak-info");
};

} // namespace lumaphone
