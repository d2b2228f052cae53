#pragma once

#include "models/ModelCatalogue.h"

#include <functional>

namespace lumaphone::test {

class FileServer;

/// The program's own models with their names, languages and licences, each of them one file of `size` bytes
/// on a local server, whose path is "/<id>.bin". Those that come with the program are as in BundledModel.h.
ModelCatalogue servedModels(FileServer &server, const std::function<qsizetype(const ModelEntry &)> &size);

} // namespace lumaphone::test
