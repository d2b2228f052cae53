#include "speech/framework/EngineChoice.h"

#include <algorithm>

namespace lumaphone {

namespace {

bool has(const std::vector<QString> &installed, const QString &locale)
{
    return std::find(installed.begin(), installed.end(), locale) != installed.end();
}

std::optional<std::size_t> firstThat(
    const std::vector<std::vector<QString>> &installed, const auto &condition)
{
    const auto found = std::find_if(installed.begin(), installed.end(), condition);
    return found == installed.end() ? std::nullopt
                                    : std::optional(static_cast<std::size_t>(found - installed.begin()));
}

} // namespace

std::vector<std::optional<std::size_t>> engineChoice(
    const std::vector<QString> &locales, const std::vector<std::vector<QString>> &installed)
{
    const auto together = firstThat(installed, [&locales](const std::vector<QString> &own) {
        return std::all_of(
            locales.begin(), locales.end(), [&own](const QString &locale) { return has(own, locale); });
    });
    std::vector<std::optional<std::size_t>> choice(locales.size(), together);
    if (!together) {
        std::transform(locales.begin(), locales.end(), choice.begin(), [&installed](const QString &locale) {
            return firstThat(
                installed, [&locale](const std::vector<QString> &own) { return has(own, locale); });
        });
    }
    return choice;
}

} // namespace lumaphone
