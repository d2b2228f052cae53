#pragma once

#include "translation/engine/ModelFile.h"

#include <map>
#include <string>
#include <string_view>

namespace lumaphone::engine {

/// The description of the architecture that a model file carries in its tensor "special:model.yml".
struct ModelSettings
{
    int width = 0; ///< of the embeddings and of every layer
    int encoderDepth = 0;
    int decoderDepth = 0;
    int heads = 0;
    int innerWidth = 0; ///< of the feed-forward layers

    /// Reads and checks the description. Throws EngineError (damaged, or unsupported for another
    /// architecture).
    static ModelSettings read(const ModelFile &file);
};

/// The top-level "key: value" lines of a description; what is indented below a key is appended to its value.
std::map<std::string, std::string, std::less<>> readSettingLines(std::string_view text);

} // namespace lumaphone::engine
