#include "glossary/LumaphoneGlossaryTermMode.h"

#include <algorithm>

namespace lumaphone {

QString rawValue(LumaphoneGlossaryTermMode mode)
{
    switch (mode) {
    case LumaphoneGlossaryTermMode::preserve:
        return QStringLiteral("preserve");
    case LumaphoneGlossaryTermMode::translate:
        return QStringLiteral("translate");
    }
    Q_UNREACHABLE();
}

std::optional<LumaphoneGlossaryTermMode> lumaphoneGlossaryTermMode(const QString &rawValue)
{
    const auto &modes = allLumaphoneGlossaryTermModes;
    const auto found = std::find_if(
        modes.begin(), modes.end(), [&](auto mode) { return lumaphone::rawValue(mode) == rawValue; });
    return found == modes.end() ? std::nullopt : std::optional(*found);
}

} // namespace lumaphone
