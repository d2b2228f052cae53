#include "translation/engine/FloatMath.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace lumaphone::engine {
void addAndNormalize(float *sums, const float *added, int rows, const LayerNorm &norm)
{
    constexpr float epsilon = 1e-6F;
    const int width = int(norm.scale.size());
    const float *scale = norm.scale.data();
    const float *bias = norm.bias.data();
    for (int row = 0; row < rows; ++row) {
        float *x = sums + std::size_t(row) * std::size_t(width);
        const float *y = added + std::size_t(row) * std::size_t(width);
        for (int index = 0; index < width; ++index)
            x[index] += y[index];
        // In order, as the usual programs for these models sum: the last digit decides many a rounding to 8
        // bits.
        const float mean = std::accumulate(x, x + width, 0.0F) / static_cast<float>(width);
        const float squares = std::accumulate(x, x + width, 0.0F,
            [mean](float sum, float value) { return sum + (value - mean) * (value - mean); });
        const float deviation = std::sqrt(squares / static_cast<float>(width) + epsilon);
        for (int index = 0; index < width; ++index)
            x[index] = scale[index] * ((x[index] - mean) / deviation) + bias[index];
    }
}

void softmax(float *scores, int count)
{
    const float greatest = *std::max_element(scores, scores + count);
    float sum = 0;
    for (int index = 0; index < count; ++index) {
        scores[index] = std::exp(scores[index] - greatest);
        sum += scores[index];
    }
    for (int index = 0; index < count; ++index)
        scores[index] /= sum;
}

void recur(float *state, const float *forget, const float *candidate, float *output, int width)
{
    for (int index = 0; index < width; ++index) {
        const float gate = 1.0F / (1.0F + std::exp(-forget[index]));
        state[index] = gate * state[index] + (1.0F - gate) * candidate[index];
        output[index] = std::max(state[index], 0.0F);
    }
}

void transpose(const float *input, int rows, int width, float *output)
{
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < width; ++column)
            output[std::size_t(column) * std::size_t(rows) + std::size_t(row)]
                = input[std::size_t(row) * std::size_t(width) + std::size_t(column)];
    }
}

void attend(const float *query, const float *keys, const float *values, int stride, int count, int headWidth,
    float *weights, float *output)
{
    std::fill_n(weights, count, 0.0F);
    for (int element = 0; element < headWidth; ++element) {
        const float factor = query[element];
        const float *key = keys + std::size_t(element) * std::size_t(count);
        for (int position = 0; position < count; ++position)
            weights[position] += factor * key[position];
    }
    const float scale = 1.0F / std::sqrt(static_cast<float>(headWidth));
    for (int position = 0; position < count; ++position)
        weights[position] *= scale;
    softmax(weights, count);
    std::fill_n(output, headWidth, 0.0F);
    for (int position = 0; position < count; ++position) {
        const float weight = weights[position];
        const float *value = values + std::size_t(position) * std::size_t(stride);
        for (int element = 0; element < headWidth; ++element)
            output[element] += weight * value[element];
    }
}

std::vector<float> positionVectors(int positions, int width)
{
    const int half = width / 2;
    const float step = std::log(10000.0F) / (static_cast<float>(half) - 1.0F);
    std::vector<float> vectors(std::size_t(positions) * std::size_t(width));
    for (int position = 0; position < positions; ++position) {
        float *vector = vectors.data() + std::size_t(position) * std::size_t(width);
        for (int index = 0; index < half; ++index) {
            const float angle = static_cast<float>(position) * std::exp(static_cast<float>(index) * -step);
            vector[index] = std::sin(angle);
            vector[half + index] = std::cos(angle);
        }
    }
    return vectors;
}

void embed(const EmbeddingTable &table, int word, const float *position, int width, float *output)
{
    const float toReal = 1.0F / table.multiplier;
    const float scale = std::sqrt(static_cast<float>(width));
    if (table.digits)
        table.digits->copyRow(word, output);
    else
        std::copy_n(table.weights + std::size_t(word) * std::size_t(width), width, output);
    for (int index = 0; index < width; ++index)
        output[index] = output[index] * toReal * scale + position[index];
}

} // namespace lumaphone::engine
