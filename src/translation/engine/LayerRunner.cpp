#include "translation/engine/LayerRunner.h"

#include "translation/engine/Shares.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace lumaphone::engine {
namespace {

constexpr std::size_t mostJobs = 3;
// Outputs computed at a time: few enough for the integers to stay close to the processor.
constexpr int block = 64;

std::vector<const AffineLayer *> layersOf(const StudentModel &model)
{
    std::vector<const AffineLayer *> layers = {&model.output()};
    const auto append = [&](const AttentionLayer &attention, const FeedForwardLayer &feedForward) {
        layers.insert(layers.end(),
            {&attention.query, &attention.key, &attention.value, &attention.output, &feedForward.inner,
                &feedForward.outer});
    };
    for (const EncoderLayer &layer : model.encoder())
        append(layer.attention, layer.feedForward);
    for (const DecoderLayer &layer : model.decoder()) {
        append(layer.attention, layer.feedForward);
        layers.insert(layers.end(), {&layer.input, &layer.forget});
    }
    return layers;
}

/// The bias less what a shift of the codes adds, in the order of operations of programs that shift.
std::vector<float> unshiftedBias(const AffineLayer &layer, int shift)
{
    const QuantizedMatrix &matrix = layer.matrix;
    const float range = static_cast<float>(shift);
    const float factor = -((range / matrix.inputMultiplier) * (range / matrix.weightMultiplier)) / range;
    std::vector<float> bias(std::size_t(matrix.outputs));
    for (std::size_t output = 0; output < bias.size(); ++output) {
        const std::int8_t *row = matrix.weights + output * std::size_t(matrix.depth);
        const int sum = std::accumulate(row, row + matrix.depth, 0);
        bias[output] = static_cast<float>(sum) * factor + (layer.bias.empty() ? 0.0F : layer.bias[output]);
    }
    return bias;
}

} // namespace

LayerRunner::LayerRunner(const StudentModel &model, const Kernels &kernels, WorkerTeam &team, int mostRows)
    : m_kernels(kernels)
    , m_team(team)
    , m_codes(std::size_t(mostRows)
          * std::max(
              mostJobs * std::size_t(model.settings().width), std::size_t(model.settings().innerWidth)))
    , m_products(std::size_t(team.members()), std::vector<std::int32_t>(std::size_t(mostRows) * block))
{
    if (kernels.shift == 0)
        return;
    for (const AffineLayer *layer : layersOf(model))
        m_unshiftedBias.emplace(layer, unshiftedBias(*layer, kernels.shift));
}

const float *LayerRunner::biasFor(const AffineLayer &layer) const
{
    if (m_kernels.shift != 0)
        return m_unshiftedBias.at(&layer).data();
    return layer.bias.empty() ? nullptr : layer.bias.data();
}

void LayerRunner::run(std::span<const LayerJob> jobs, int rows)
{
    Q_ASSERT(jobs.size() <= mostJobs);
    const std::size_t codesPerJob = std::size_t(rows) * std::size_t(jobs.front().layer->matrix.depth);
    Q_ASSERT(jobs.size() * codesPerJob <= m_codes.size());
    for (std::size_t index = 0; index < jobs.size(); ++index)
        m_kernels.quantize(jobs[index].inputs, int(codesPerJob), jobs[index].layer->matrix.inputMultiplier,
            m_codes.data() + index * codesPerJob);
    const int pieces = piecesFor(m_team);
    m_team.run(pieces * int(jobs.size()), [&](int member, int piece) {
        const std::size_t index = std::size_t(piece / pieces);
        computePiece(jobs[index], m_codes.data() + index * codesPerJob, rows, member, piece % pieces);
    });
}

void LayerRunner::computePiece(const LayerJob &job, const std::int8_t *codes, int rows, int member, int piece)
{
    const QuantizedMatrix &matrix = job.layer->matrix;
    const float toReal = 1.0F / (matrix.inputMultiplier * matrix.weightMultiplier);
    const float *bias = biasFor(*job.layer);
    const float least = job.activation == Activation::relu ? 0.0F : -std::numeric_limits<float>::infinity();
    std::int32_t *products = m_products[std::size_t(member)].data();
    const Share share = shareOf(matrix.outputs, piece, m_team);
    for (int first = share.first; first < share.last; first += block) {
        const int count = std::min(block, share.last - first);
        m_kernels.multiply(codes, rows, matrix.depth,
            matrix.weights + std::size_t(first) * std::size_t(matrix.depth), nullptr, count, products);
        for (int row = 0; row < rows; ++row) {
            float *outputs = job.outputs + std::size_t(row) * std::size_t(matrix.outputs) + first;
            const std::int32_t *sums = products + std::size_t(row) * std::size_t(count);
            for (int index = 0; index < count; ++index) {
                const float value
                    = static_cast<float>(sums[index]) * toReal + (bias ? bias[first + index] : 0.0F);
                outputs[index] = value > least ? value : least;
            }
        }
    }
}

} // namespace lumaphone::engine
