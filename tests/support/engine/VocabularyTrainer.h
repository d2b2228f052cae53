#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumaphone::engine::test {

/// The bytes of a SentencePiece vocabulary trained on the sentences of the sample text, with the numbers the
/// models of this kind use: 0 ends a sentence, 1 is unknown, bytes stand for what no piece covers.
std::string trainVocabulary(int words);

/// The vocabulary with unused pieces behind its own, `words` in all.
std::string paddedVocabulary(std::string_view vocabulary, int words);

/// A vocabulary whose pieces spell their own numbers, so that every text says which words it was made from.
std::string namingVocabulary(int words);
/// The text of words of the naming vocabulary, and back.
std::string namesOf(const std::vector<int> &words);
std::vector<int> wordsNamedIn(std::string_view text);

} // namespace lumaphone::engine::test
