#include "EditedBytes.h"
#include "Require.h"
#include "support/engine/ModelGenerator.h"
#include "translation/engine/EngineError.h"
#include "translation/engine/LexicalShortlist.h"

#include <algorithm>
#include <array>

using namespace lumaphone;
using namespace lumaphone::engine;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int words = 60;
    static const std::string sound = engine::test::generateShortlist(words, words, 8, 4, 1);
    const std::string bytes = fuzz::editedBytes(sound, {data, size});
    // Aligned as a mapped file is.
    std::vector<std::uint64_t> aligned(bytes.size() / sizeof(std::uint64_t) + 1);
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char *>(aligned.data()));
    const QString name = QStringLiteral("lex.bin");
    try {
        const LexicalShortlist list(
            std::as_bytes(std::span(aligned)).first(bytes.size()), name, words, words);
        const std::array sentence = {59, 0, 7};
        for (const bool isShared : {false, true}) {
            const auto candidates = list.candidates(sentence, isShared);
            fuzz::require(std::is_sorted(candidates.begin(), candidates.end()), "candidates are in order");
            fuzz::require(
                std::adjacent_find(candidates.begin(), candidates.end()) == candidates.end(), "once each");
            fuzz::require(candidates.empty() || candidates.back() < words, "and words of the vocabulary");
        }
    } catch (const EngineError &error) {
        fuzz::require(error.errorDescription().contains(name), "an error names the file");
    }
    return 0;
}
