#include "EditedBytes.h"
#include "Require.h"
#include "support/engine/VocabularyTrainer.h"
#include "translation/engine/EngineError.h"
#include "translation/engine/Vocabulary.h"

#include <cstdint>

using namespace lumaphone;
using namespace lumaphone::engine;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const std::string sound = engine::test::trainVocabulary(900);
    const std::string bytes = fuzz::editedBytes(sound, {data, size});
    const QString name = QStringLiteral("vocabulary.spm");
    try {
        const Vocabulary vocabulary(bytes, name);
        for (const char *text :
            {"My sister bought bread.", "妹は Ａ① パンを ﾊﾟﾝ 買いました。", "e\u0301 \xFF \u200B"}) {
            std::vector<int> words;
            for (const Vocabulary::Piece &piece : vocabulary.encode(text)) {
                fuzz::require(piece.word >= 0 && piece.word < vocabulary.size(), "a piece is a word");
                words.push_back(piece.word);
            }
            const Vocabulary::Spelling spelling = vocabulary.decode(words);
            fuzz::require(spelling.ends.size() == words.size(), "every word has its place");
        }
    } catch (const EngineError &error) {
        fuzz::require(error.errorDescription().contains(name), "an error names the file");
    }
    return 0;
}
