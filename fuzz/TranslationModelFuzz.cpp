#include "EditedBytes.h"
#include "Require.h"
#include "support/engine/ModelGenerator.h"
#include "translation/engine/Decoder.h"
#include "translation/engine/Encoder.h"

#include <array>

using namespace lumaphone;
using namespace lumaphone::engine;

namespace {

std::string smallestModel()
{
    engine::test::ModelShape shape;
    shape.innerWidth = 64;
    shape.encoderDepth = 1;
    shape.decoderDepth = 1;
    shape.targetWords = 16;
    return engine::test::generateModel(shape);
}

void translate(const StudentModel &model)
{
    WorkerTeam team(1);
    LayerRunner runner(model, fastestKernels(), team, mostSourceTokens);
    Encoder encoder(model, runner);
    OutputSearch search(model.output(), runner.biasFor(model.output()), fastestKernels(), team);
    Decoder decoder(model, runner, search);
    const std::array words = {5, 7, 0};
    decoder.start(encoder.encode(words));
    std::optional<int> previous;
    for (int step = 0; step < 3; ++step) {
        decoder.step(previous);
        const int word = decoder.choose({}, model.target().rows, 1).word;
        fuzz::require(
            word >= 0 && word < model.target().rows && word != 1, "a word of the vocabulary is chosen");
        previous = word;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const std::string sound = smallestModel();
    const std::string bytes = fuzz::editedBytes(sound, {data, size});
    const QString name = QStringLiteral("model.bin");
    try {
        const StudentModel model(ModelFile(std::as_bytes(std::span(bytes.data(), bytes.size())), name));
        translate(model);
    } catch (const EngineError &error) {
        fuzz::require(error.errorDescription().contains(name), "an error names the file");
        fuzz::require(!error.subject().isEmpty() && error.subject().size() < 400,
            "an error says briefly what is wrong");
    }
    return 0;
}
