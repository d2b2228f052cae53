#include "translation/engine/Decoder.h"

#include "translation/engine/FloatMath.h"

#include <algorithm>
#include <array>

namespace lumaphone::engine {

Decoder::Decoder(const StudentModel &model, LayerRunner &runner, OutputSearch &search)
    : m_model(model)
    , m_runner(runner)
    , m_search(search)
    , m_width(model.settings().width)
    , m_positions(positionVectors(mostTargetTokens, m_width))
    , m_keys(std::size_t(mostSourceTokens) * std::size_t(m_width))
    , m_hidden(std::size_t(m_width))
    , m_first(std::size_t(m_width))
    , m_second(std::size_t(m_width))
    , m_added(std::size_t(m_width))
    , m_inner(std::size_t(model.settings().innerWidth))
    , m_weights(std::size_t(mostSourceTokens))
    , m_otherWeights(std::size_t(mostSourceTokens))
{
    const std::size_t source = std::size_t(mostSourceTokens) * std::size_t(m_width);
    for (std::size_t layer = 0; layer < model.decoder().size(); ++layer)
        m_memory.push_back({std::vector<float>(source), std::vector<float>(source),
            std::vector<float>(std::size_t(m_width))});
}

void Decoder::start(std::span<const float> encoded)
{
    m_sourceTokens = int(encoded.size()) / m_width;
    m_position = 0;
    for (std::size_t index = 0; index < m_memory.size(); ++index) {
        const AttentionLayer &layer = m_model.decoder()[index].attention;
        Memory &memory = m_memory[index];
        const std::array jobs = {LayerJob {&layer.key, encoded.data(), m_keys.data()},
            LayerJob {&layer.value, encoded.data(), memory.values.data()}};
        m_runner.run(jobs, m_sourceTokens);
        transpose(m_keys.data(), m_sourceTokens, m_width, memory.turnedKeys.data());
        std::fill(memory.state.begin(), memory.state.end(), 0.0F);
    }
}

void Decoder::step(std::optional<int> previous)
{
    Q_ASSERT(m_position < mostTargetTokens);
    const float *position = m_positions.data() + std::size_t(m_position) * std::size_t(m_width);
    // Nothing precedes the first word, not even the end of a sentence: its place is taken by zeros.
    if (previous)
        embed(m_model.target(), *previous, position, m_width, m_hidden.data());
    else
        std::copy_n(position, m_width, m_hidden.data());
    for (std::size_t index = 0; index < m_memory.size(); ++index) {
        const DecoderLayer &layer = m_model.decoder()[index];
        recurrent(layer, m_memory[index]);
        attendSource(layer.attention, m_memory[index]);
        feedForward(layer.feedForward);
    }
    ++m_position;
}

BestWord Decoder::choose(std::span<const std::uint32_t> candidates, int words, int excluded)
{
    return m_search.best(m_hidden.data(), candidates, words, excluded);
}

std::span<const float> Decoder::scores()
{
    m_scores.resize(std::size_t(m_model.target().rows));
    m_runner.run({&m_model.output(), m_hidden.data(), m_scores.data()}, 1);
    return m_scores;
}

void Decoder::recurrent(const DecoderLayer &layer, Memory &memory)
{
    const std::array jobs = {LayerJob {&layer.input, m_hidden.data(), m_first.data()},
        LayerJob {&layer.forget, m_hidden.data(), m_second.data()}};
    m_runner.run(jobs, 1);
    recur(memory.state.data(), m_second.data(), m_first.data(), m_added.data(), m_width);
    addAndNormalize(m_hidden.data(), m_added.data(), 1, layer.recurrentNorm);
}

void Decoder::attendSource(const AttentionLayer &layer, const Memory &memory)
{
    m_runner.run({&layer.query, m_hidden.data(), m_first.data()}, 1);
    const int heads = m_model.settings().heads;
    const int headWidth = m_width / heads;
    for (int head = 0; head < heads; ++head) {
        const std::size_t column = std::size_t(head) * std::size_t(headWidth);
        float *weights = head == 0 ? m_weights.data() : m_otherWeights.data();
        attend(m_first.data() + column, memory.turnedKeys.data() + column * std::size_t(m_sourceTokens),
            memory.values.data() + column, m_width, m_sourceTokens, headWidth, weights,
            m_second.data() + column);
    }
    m_runner.run({&layer.output, m_second.data(), m_added.data()}, 1);
    addAndNormalize(m_hidden.data(), m_added.data(), 1, layer.norm);
}

void Decoder::feedForward(const FeedForwardLayer &layer)
{
    m_runner.run({&layer.inner, m_hidden.data(), m_inner.data(), Activation::relu}, 1);
    m_runner.run({&layer.outer, m_inner.data(), m_added.data()}, 1);
    addAndNormalize(m_hidden.data(), m_added.data(), 1, layer.norm);
}

} // namespace lumaphone::engine
