#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

#include <QCoroTask>

#include <memory>

namespace lumaphone {
class Clock;
class LumaphoneSettings;
class MainQueue;
} // namespace lumaphone

namespace lumaphone::cli {

/// The settings that keep the key, and what a command needs in order to wait for the keychain, which may ask
/// the user; one that does not answer at all is given up. All of it outlives the command.
struct KeyAccess
{
    LumaphoneSettings &settings;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<MainQueue> mainQueue;
};

/// Reads the provider's key from standard input, on a terminal without showing it, and keeps it in the
/// keychain for the server that is configured.
QCoro::Task<ExitStatus> runKeySet(KeyAccess access, const CommandStreams &streams);
QCoro::Task<ExitStatus> runKeyClear(KeyAccess access, const CommandStreams &streams);
/// Says whether there is a key and whom it is for, never which one.
QCoro::Task<ExitStatus> runKeyStatus(KeyAccess access, const CommandStreams &streams);

} // namespace lumaphone::cli
