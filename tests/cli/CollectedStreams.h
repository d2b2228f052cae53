#pragma once

#include "cli/CommandStreams.h"

namespace lumaphone::test {

/// What a command prints.
struct CollectedStreams
{
    CollectedStreams() = default;
    CollectedStreams(const CollectedStreams &) = delete;
    CollectedStreams &operator=(const CollectedStreams &) = delete;

    QByteArray output;
    QByteArray messages;
    cli::CommandStreams streams {[this](const QByteArray &bytes) { output += bytes; },
        [this](const QByteArray &bytes) {
            messages += bytes;
        }};
};

} // namespace lumaphone::test
