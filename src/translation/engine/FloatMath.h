#pragma once

#include "translation/engine/StudentModel.h"

#include <span>
#include <vector>

namespace lumaphone::engine {

/// sums[i] = norm(sums[i] + added[i]) for `rows` rows of the norm's width.
void addAndNormalize(float *sums, const float *added, int rows, const LayerNorm &norm);

/// Turns scores into weights that sum to 1.
void softmax(float *scores, int count);

/// The recurrent unit's step: c = σ(f)·c + (1 - σ(f))·x̃ and output = max(c, 0).
void recur(float *state, const float *forget, const float *candidate, float *output, int width);

/// Copies `rows` rows of `width` into `width` rows of `rows`.
void transpose(const float *input, int rows, int width, float *output);

/// One attention head for one query. `keys` holds one row of `count` values per element of the head, `values`
/// one row per attended position, `stride` apart. Leaves the weights in `weights` (`count` values). The
/// output may take the query's place.
void attend(const float *query, const float *keys, const float *values, int stride, int count, int headWidth,
    float *weights, float *output);

/// Position vectors: sines in the first half of the width, cosines in the second.
std::vector<float> positionVectors(int positions, int width);

/// output = √width · word's vector + position.
void embed(const EmbeddingTable &table, int word, const float *position, int width, float *output);

} // namespace lumaphone::engine
