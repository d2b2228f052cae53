#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace lumaphone {

/// Which engine serves each of the locales that are recognised together. `installed`: the locales of each
/// engine, in the order of preference. The first engine that has all of them serves all, so that one decoder
/// tells them apart; where none does, each locale goes to the first engine that has it. None: to no engine.
std::vector<std::optional<std::size_t>> engineChoice(
    const std::vector<QString> &locales, const std::vector<std::vector<QString>> &installed);

} // namespace lumaphone
