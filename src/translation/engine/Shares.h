#pragma once

#include "translation/engine/WorkerTeam.h"

#include <algorithm>
#include <cstdint>

namespace lumaphone::engine {

/// Outputs from `first` to before `last`.
struct Share
{
    int first;
    int last;
};

/// Two pieces per member even out what members get done.
inline int piecesFor(const WorkerTeam &team)
{
    return team.members() == 1 ? 1 : 2 * team.members();
}

/// One of the team's pieces of `count` outputs, in whole groups of eight.
inline Share shareOf(int count, int piece, const WorkerTeam &team)
{
    const int groups = (count + 7) / 8;
    const auto border = [&](int index) {
        return std::min(count, int(std::int64_t(groups) * index / piecesFor(team)) * 8);
    };
    return {border(piece), border(piece + 1)};
}

} // namespace lumaphone::engine
