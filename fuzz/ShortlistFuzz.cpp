#include "EditedBytes.h"
#include "Require.h"
#include "support/engine/ModelGenerator.h"
#include "translation/engine/EngineError.h"
#include "translation/engine/LexicalShortlist.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>

using namespace lumaphone;
using namespace lumaphone::engine;

namespace {

/// Writes a file that lies nowhere but in memory, over the one before. Returns its path.
QString writtenInMemory(const std::string &bytes)
{
    static const int file = ::memfd_create("lex.bin", MFD_CLOEXEC);
    fuzz::require(
        ::ftruncate(file, 0) == 0 && ::pwrite(file, bytes.data(), bytes.size(), 0) == ssize_t(bytes.size()),
        "memory for a file");
    return QStringLiteral("/proc/self/fd/%1").arg(file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int words = 60;
    static const std::string sound = engine::test::generateShortlist(words, words, 8, 4, 1);
    const std::string bytes = fuzz::editedBytes(sound, {data, size});
    const QString name = writtenInMemory(bytes);
    try {
        const LexicalShortlist list(name, words, words);
        const std::array sentence = {59, 0, 7};
        for (const bool isShared : {false, true}) {
            const auto candidates = list.candidates(sentence, isShared);
            fuzz::require(std::is_sorted(candidates.begin(), candidates.end()), "candidates are in order");
            fuzz::require(
                std::adjacent_find(candidates.begin(), candidates.end()) == candidates.end(), "once each");
            fuzz::require(candidates.empty() || candidates.back() < words, "and words of the vocabulary");
        }
    } catch (const EngineError &error) {
        fuzz::require(error.path() == name, "an error names the file");
    }
    return 0;
}
