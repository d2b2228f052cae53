#pragma once

#include "translation/engine/EngineError.h"
#include "translation/engine/OpenFile.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lumaphone::engine {

/// A "lex" file: for every source word the target words that are likely in its translation. The output layer
/// then scores these instead of the whole vocabulary. A sentence needs a few lists only, the next one others:
/// they stay in the file, which is read when they are asked for.
class LexicalShortlist
{
public:
    /// `sourceWords` and `targetWords` are the rows of the model's embeddings. Throws EngineError.
    LexicalShortlist(const QString &path, int sourceWords, int targetWords);

    /// The target words, in order, for a sentence. With one vocabulary for both languages its own words are
    /// among them. Throws EngineError if the file can no longer be read, or is not what it was.
    std::vector<std::uint32_t> candidates(std::span<const int> sentence, bool isShared) const;

private:
    void check() const;
    void readOffsets(std::uint64_t first, std::span<std::uint64_t> offsets) const;
    void readWords(std::uint64_t first, std::span<std::uint32_t> words) const;
    void appendList(std::uint64_t sourceWord, std::vector<std::uint32_t> &words) const;
    [[noreturn]] void refuse(EngineError::Case which, const QString &subject) const;

    OpenFile m_file;
    std::uint32_t m_targetWords;
    std::uint32_t m_alwaysBelow = 0; ///< the frequent words below this number are always candidates
    std::uint64_t m_offsetCount = 0; ///< the list of word w lies between the offsets w and w + 1
    std::uint64_t m_wordCount = 0; ///< in all lists together
};

} // namespace lumaphone::engine
