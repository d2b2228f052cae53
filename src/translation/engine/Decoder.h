#pragma once

#include "translation/engine/Encoder.h"
#include "translation/engine/LayerRunner.h"
#include "translation/engine/OutputSearch.h"
#include "translation/engine/StudentModel.h"

#include <optional>
#include <span>
#include <vector>

namespace lumaphone::engine {

/// The most tokens of one translated sentence, its end included: two per source token.
constexpr int mostTargetTokens = 2 * mostSourceTokens;

/// Produces a translation word by word: start(), then step() and choose() in turns. All memory is set aside
/// at the start.
class Decoder
{
public:
    Decoder(const StudentModel &model, LayerRunner &runner, OutputSearch &search);

    /// Begins a sentence whose encoder gave `encoded`.
    void start(std::span<const float> encoded);

    /// Moves on to the next position. `previous` is the word chosen for the position before; the first has
    /// none.
    void step(std::optional<int> previous);

    /// The best word at this position; see OutputSearch::best.
    BestWord choose(std::span<const std::uint32_t> candidates, int words, int excluded);

    /// Every word's score at this position, valid until the next call.
    std::span<const float> scores();

    /// How much the last step looked at each source token; the values sum to 1.
    std::span<const float> alignment() const { return {m_weights.data(), std::size_t(m_sourceTokens)}; }

private:
    struct Memory
    {
        std::vector<float> turnedKeys;
        std::vector<float> values;
        std::vector<float> state;
    };

    void recurrent(const DecoderLayer &layer, Memory &memory);
    void attendSource(const AttentionLayer &layer, const Memory &memory);
    void feedForward(const FeedForwardLayer &layer);

    const StudentModel &m_model;
    LayerRunner &m_runner;
    OutputSearch &m_search;
    int m_width;
    int m_sourceTokens = 0;
    int m_position = 0;
    std::vector<float> m_positions;
    std::vector<Memory> m_memory; ///< one per layer
    std::vector<float> m_keys;
    std::vector<float> m_hidden;
    std::vector<float> m_first;
    std::vector<float> m_second;
    std::vector<float> m_added;
    std::vector<float> m_inner;
    std::vector<float> m_weights; ///< of the first head in the last layer, once a step is done
    std::vector<float> m_otherWeights;
    std::vector<float> m_scores; ///< empty until somebody asks for scores
};

} // namespace lumaphone::engine
