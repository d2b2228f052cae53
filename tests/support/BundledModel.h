#pragma once

#include "models/ModelCatalogue.h"

namespace lumaphone::test {

/// A small model "english-speech" that comes with the program: encoder, decoder, tokens, vad, licence.
ModelEntry bundledModel();

/// The program's own catalogue, but with small files in place of those that come with the program.
ModelCatalogue catalogueWithSmallBundle();

/// Writes the files of both into `<folder>/english-speech`.
void shipBundledModel(const QString &folder);

} // namespace lumaphone::test
