#pragma once

#include "translation/engine/Kernels.h"
#include "translation/engine/StudentModel.h"
#include "translation/engine/WorkerTeam.h"

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace lumaphone::engine {

enum class Activation { none, relu };

/// One layer to be computed: `rows` inputs of the layer's depth, one after the other, into as many outputs.
struct LayerJob
{
    const AffineLayer *layer;
    const float *inputs;
    float *outputs;
    Activation activation = Activation::none;
};

/// Computes 8-bit layers: rounds the inputs, multiplies integers, scales the products back. Shares the
/// outputs among the members of a team. All memory is set aside at the start.
class LayerRunner
{
public:
    LayerRunner(const StudentModel &model, const Kernels &kernels, WorkerTeam &team, int mostRows);

    WorkerTeam &team() { return m_team; }

    /// Computes up to three layers of the same shape side by side.
    void run(std::span<const LayerJob> jobs, int rows);
    void run(const LayerJob &job, int rows) { run(std::span(&job, 1), rows); }

    /// The bias that the layer's products need, or null.
    const float *biasFor(const AffineLayer &layer) const;

private:
    void computePiece(const LayerJob &job, const std::int8_t *codes, int rows, int member, int piece);

    const Kernels &m_kernels;
    WorkerTeam &m_team;
    std::vector<std::int8_t> m_codes;
    std::vector<std::vector<std::int32_t>> m_products; ///< one per member
    /// Where kernels shift the codes: the bias less what the shift adds to each output.
    std::unordered_map<const AffineLayer *, std::vector<float>> m_unshiftedBias;
};

} // namespace lumaphone::engine
