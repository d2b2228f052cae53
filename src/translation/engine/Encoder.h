#pragma once

#include "translation/engine/LayerRunner.h"
#include "translation/engine/StudentModel.h"

#include <span>
#include <vector>

namespace lumaphone::engine {

/// The most tokens of one source sentence, its end included.
constexpr int mostSourceTokens = 128;

/// Turns the tokens of a sentence into one vector each. All memory is set aside at the start.
class Encoder
{
public:
    Encoder(const StudentModel &model, LayerRunner &runner);

    /// `words` are known to the source vocabulary, 1 … mostSourceTokens of them. Returns a row of the model's
    /// width per word, valid until the next call.
    std::span<const float> encode(std::span<const int> words);

private:
    void attendWithin(const AttentionLayer &layer, int rows);
    void attendHead(int rows, int member, int head);
    void feedForward(const FeedForwardLayer &layer, int rows);

    const StudentModel &m_model;
    LayerRunner &m_runner;
    int m_width;
    int m_heads;
    std::vector<float> m_positions;
    std::vector<float> m_hidden;
    std::vector<float> m_added;
    // An attention and a feed-forward network take turns: the parts of the one lie in the other's place.
    std::vector<float> m_inner;
    std::span<float> m_queries; ///< and then what they found
    std::span<float> m_keys;
    std::span<float> m_turnedKeys; ///< one row per element of the width
    std::span<float> m_values;
    std::vector<float> m_weights; ///< mostSourceTokens per member
};

} // namespace lumaphone::engine
