#pragma once

#include <string>
#include <vector>

namespace lumaphone::engine::test {

/// About two thousand everyday sentences in English, Japanese, Korean and Traditional Chinese, put together
/// from patterns. The same ones in the same order every time; none contains the end of a sentence before its
/// own.
std::vector<std::string> sampleSentences();

/// The English ones alone.
std::vector<std::string> englishSentences();

} // namespace lumaphone::engine::test
