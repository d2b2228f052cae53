#pragma once

#include "translation/engine/Kernels.h"
#include "translation/engine/StudentModel.h"
#include "translation/engine/WorkerTeam.h"

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace lumaphone::engine {

enum class Activation { None, Relu };

/// One layer to be computed: `rows` inputs of the layer's depth, one after the other, into as many outputs.
struct LayerJob
{
    const AffineLayer *layer;
    const float *inputs;
    float *outputs;
    Activation activation = Activation::None;
};

/// The best word for a decoder state. Of equal scores the lower word wins.
struct BestWord
{
    int word = -1;
    float score = 0;
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

    /// The best of the layer's outputs for one input. Only `candidates` count, all of them if there are none
    /// named, and none of them that is `excluded` or not below `words`.
    BestWord best(const AffineLayer &layer, const float *input, std::span<const std::uint32_t> candidates,
        int words, int excluded);

private:
    /// The bias that the layer's products need, or null.
    const float *biasFor(const AffineLayer &layer) const;
    void computePiece(const LayerJob &job, const std::int8_t *codes, int rows, int member, int piece);
    BestWord bestOfPiece(const AffineLayer &layer, std::span<const std::uint32_t> candidates, int words,
        int excluded, int member, int piece);

    const Kernels &m_kernels;
    WorkerTeam &m_team;
    std::vector<std::int8_t> m_codes;
    std::vector<std::vector<std::int32_t>> m_products; ///< one per member
    std::vector<BestWord> m_bestOfPiece;
    /// Where kernels shift the codes: the bias less what the shift adds to each output.
    std::unordered_map<const AffineLayer *, std::vector<float>> m_unshiftedBias;
};

} // namespace lumaphone::engine
