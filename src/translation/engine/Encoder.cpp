#include "translation/engine/Encoder.h"

#include "translation/engine/FloatMath.h"

#include <algorithm>
#include <array>

namespace lumaphone::engine {
namespace {

std::size_t room(int columns)
{
    return std::size_t(mostSourceTokens) * std::size_t(columns);
}

} // namespace

Encoder::Encoder(const StudentModel &model, LayerRunner &runner)
    : m_model(model)
    , m_runner(runner)
    , m_width(model.settings().width)
    , m_heads(model.settings().heads)
    , m_positions(positionVectors(mostSourceTokens, m_width))
    , m_hidden(room(m_width))
    , m_added(room(m_width))
    , m_inner(room(std::max(model.settings().innerWidth, 4 * m_width)))
    , m_queries(std::span(m_inner).subspan(0, room(m_width)))
    , m_keys(std::span(m_inner).subspan(room(m_width), room(m_width)))
    , m_turnedKeys(std::span(m_inner).subspan(room(2 * m_width), room(m_width)))
    , m_values(std::span(m_inner).subspan(room(3 * m_width), room(m_width)))
    , m_weights(room(runner.team().members()))
{
}

std::span<const float> Encoder::encode(std::span<const int> words)
{
    const int rows = int(words.size());
    Q_ASSERT(rows >= 1 && rows <= mostSourceTokens);
    for (int row = 0; row < rows; ++row) {
        const std::size_t offset = std::size_t(row) * std::size_t(m_width);
        embed(m_model.source(), words[std::size_t(row)], m_positions.data() + offset, m_width,
            m_hidden.data() + offset);
    }
    for (const EncoderLayer &layer : m_model.encoder()) {
        attendWithin(layer.attention, rows);
        feedForward(layer.feedForward, rows);
    }
    return {m_hidden.data(), std::size_t(rows) * std::size_t(m_width)};
}

void Encoder::attendWithin(const AttentionLayer &layer, int rows)
{
    const std::array jobs = {LayerJob {&layer.query, m_hidden.data(), m_queries.data()},
        LayerJob {&layer.key, m_hidden.data(), m_keys.data()},
        LayerJob {&layer.value, m_hidden.data(), m_values.data()}};
    m_runner.run(jobs, rows);
    transpose(m_keys.data(), rows, m_width, m_turnedKeys.data());
    m_runner.team().run(m_heads, [&](int member, int head) { attendHead(rows, member, head); });
    m_runner.run({&layer.output, m_queries.data(), m_added.data()}, rows);
    addAndNormalize(m_hidden.data(), m_added.data(), rows, layer.norm);
}

void Encoder::attendHead(int rows, int member, int head)
{
    const int headWidth = m_width / m_heads;
    const std::size_t column = std::size_t(head) * std::size_t(headWidth);
    for (int row = 0; row < rows; ++row) {
        // A query has served its purpose when its answer is written.
        float *query = m_queries.data() + std::size_t(row) * std::size_t(m_width) + column;
        attend(query, m_turnedKeys.data() + column * std::size_t(rows), m_values.data() + column, m_width,
            rows, headWidth, m_weights.data() + room(member), query);
    }
}

void Encoder::feedForward(const FeedForwardLayer &layer, int rows)
{
    m_runner.run({&layer.inner, m_hidden.data(), m_inner.data(), Activation::relu}, rows);
    m_runner.run({&layer.outer, m_inner.data(), m_added.data()}, rows);
    addAndNormalize(m_hidden.data(), m_added.data(), rows, layer.norm);
}

} // namespace lumaphone::engine
