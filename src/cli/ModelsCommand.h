#pragma once

#include "base/MainQueue.h"
#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

#include <QCoroTask>

#include <memory>
#include <optional>
#include <stop_token>

namespace lumaphone {
class ModelInstaller;
class ModelStore;
} // namespace lumaphone

namespace lumaphone::cli {

ExitStatus runModelsList(const ModelStore &store, const CommandStreams &streams);

/// `columns` of the terminal on which progress is shown; none if the messages go elsewhere.
QCoro::Task<ExitStatus> runModelsInstall(ModelsInstall command, const ModelStore &store,
    ModelInstaller &installer, const CommandStreams &streams, std::optional<int> columns,
    std::stop_token stop);

ExitStatus runModelsRemove(
    const ModelsRemove &command, const ModelStore &store, const CommandStreams &streams);

ExitStatus runModelsVerify(
    const ModelsVerify &command, const ModelStore &store, const CommandStreams &streams);

ExitStatus runModelsLicence(
    const ModelsLicence &command, const ModelStore &store, const CommandStreams &streams);

} // namespace lumaphone::cli
