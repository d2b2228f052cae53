#pragma once

#include "translation/engine/MappedFile.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lumaphone::engine {

/// A "lex" file: for every source word the target words that are likely in its translation. The output layer
/// then scores these instead of the whole vocabulary.
class LexicalShortlist
{
public:
    /// `sourceWords` and `targetWords` are the rows of the model's embeddings. Throws EngineError.
    LexicalShortlist(const QString &path, int sourceWords, int targetWords);
    /// The same for bytes that somebody else keeps; `path` names them in errors.
    LexicalShortlist(std::span<const std::byte> bytes, const QString &path, int sourceWords, int targetWords);

    /// The target words, in order, for a sentence. With one vocabulary for both languages its own words are
    /// among them.
    std::vector<std::uint32_t> candidates(std::span<const int> sentence, bool isShared) const;

private:
    void read(std::span<const std::byte> bytes, const QString &path, int sourceWords);
    /// A sentence needs a few lists only, the next one others: megabytes need not stay in memory.
    void release() const;

    std::optional<MappedFile> m_mapping;
    int m_targetWords;
    std::uint32_t m_alwaysBelow = 0; ///< the frequent words below this number are always candidates
    std::span<const std::uint64_t> m_offsets; ///< the list of word w lies between the offsets w and w + 1
    std::span<const std::uint32_t> m_words;
};

} // namespace lumaphone::engine
