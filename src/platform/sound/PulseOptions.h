#pragma once

#include <QString>

#include <chrono>

namespace lumaphone {

struct PulseOptions
{
    /// How long the sound server may take for one answer.
    std::chrono::milliseconds timeLimit {5000};
    /// Exists inside a sandbox only.
    QString sandboxMarkerPath = QStringLiteral("/.flatpak-info");
};

} // namespace lumaphone
