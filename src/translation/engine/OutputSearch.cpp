#include "translation/engine/OutputSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace lumaphone::engine {
namespace {

// Words computed at a time: few enough for their numbers to stay close to the processor.
constexpr int wordsAtATime = 512;
constexpr float never = -std::numeric_limits<float>::infinity();

bool isBetter(const BestWord &a, const BestWord &b)
{
    if (b.word < 0 || a.word < 0)
        return a.word >= 0;
    return a.score > b.score || (a.score == b.score && a.word < b.word);
}

float toReal(const QuantizedMatrix &matrix)
{
    return 1.0F / (matrix.inputMultiplier * matrix.weightMultiplier);
}

float greatestOf(std::span<const float> values)
{
    constexpr std::size_t width = 16;
    // Side by side, which compilers make vectors of.
    std::array<float, width> greatest;
    greatest.fill(never);
    std::size_t index = 0;
    for (; index + width <= values.size(); index += width) {
        for (std::size_t lane = 0; lane < width; ++lane)
            greatest[lane] = values[index + lane] > greatest[lane] ? values[index + lane] : greatest[lane];
    }
    for (; index < values.size(); ++index)
        greatest[0] = std::max(greatest[0], values[index]);
    return *std::max_element(greatest.begin(), greatest.end());
}

} // namespace

OutputSearch::OutputSearch(
    const AffineLayer &layer, const float *bias, const Kernels &kernels, WorkerTeam &team)
    : m_layer(layer)
    , m_bias(bias)
    , m_kernels(kernels)
    , m_team(team)
    , m_digits(kernels.multiplyDigits ? layer.digits : nullptr)
    , m_members(std::size_t(team.members()))
    , m_bestOfPiece(std::size_t(piecesFor(team)))
    , m_codes(std::size_t(layer.matrix.depth))
{
    std::size_t longestShare = 0;
    for (int piece = 0; m_digits && piece < piecesFor(team); ++piece) {
        const Share share = shareOf(layer.matrix.outputs, piece, team);
        longestShare = std::max(longestShare, std::size_t(share.last - share.first));
    }
    for (Member &member : m_members) {
        member.products.resize(wordsAtATime);
        member.guesses.resize(wordsAtATime);
        member.highSums.resize(longestShare);
        member.bounds.resize(longestShare);
        member.selected.resize(longestShare);
    }
}

BestWord OutputSearch::best(
    const float *input, std::span<const std::uint32_t> candidates, int words, int excluded)
{
    const QuantizedMatrix &matrix = m_layer.matrix;
    m_kernels.quantize(input, matrix.depth, matrix.inputMultiplier, m_codes.data());
    const bool searchesDigits = m_digits && candidates.empty();
    if (searchesDigits) {
        m_codeSum = std::accumulate(m_codes.begin(), m_codes.end(), 0);
        const int squares = std::inner_product(m_codes.begin(), m_codes.end(), m_codes.begin(), 0);
        m_codeLength = static_cast<float>(std::sqrt(double(squares)) * (1 + 1e-6));
    }
    const int count = candidates.empty() ? std::min(matrix.outputs, words) : int(candidates.size());
    m_team.run(piecesFor(m_team), [&](int index, int piece) {
        const Share share = shareOf(count, piece, m_team);
        Member &member = m_members[std::size_t(index)];
        m_bestOfPiece[std::size_t(piece)] = searchesDigits
            ? bestOfDigits(share, excluded, member)
            : bestOfRows(candidates, share, words, excluded, member);
    });
    return *std::min_element(m_bestOfPiece.begin(), m_bestOfPiece.end(), isBetter);
}

BestWord OutputSearch::bestOfRows(
    std::span<const std::uint32_t> candidates, Share share, int words, int excluded, Member &member) const
{
    const QuantizedMatrix &matrix = m_layer.matrix;
    BestWord best;
    for (int first = share.first; first < share.last; first += wordsAtATime) {
        const int size = std::min(wordsAtATime, share.last - first);
        const std::uint32_t *selected = candidates.empty() ? nullptr : candidates.data() + first;
        const std::int8_t *weights
            = selected ? matrix.weights : matrix.weights + std::size_t(first) * std::size_t(matrix.depth);
        m_kernels.multiply(m_codes.data(), 1, matrix.depth, weights, selected, size, member.products.data());
        for (int index = 0; index < size; ++index) {
            const int word = selected ? int(selected[index]) : first + index;
            const auto product = static_cast<float>(member.products[std::size_t(index)]);
            const BestWord found = {word, product * toReal(matrix) + m_bias[word]};
            if (word != excluded && word < words && isBetter(found, best))
                best = found;
        }
    }
    return best;
}

BestWord OutputSearch::bestOfDigits(Share share, int excluded, Member &member) const
{
    const int promising = guess(share, excluded, member);
    if (promising < 0)
        return {};
    member.selected.front() = std::uint32_t(promising);
    const float reached = bestOfSelected(share.first, 1, member).score;
    int selected = 0;
    for (int word = share.first; word < share.last; ++word) {
        member.selected[std::size_t(selected)] = std::uint32_t(word);
        selected += member.bounds[std::size_t(word - share.first)] >= reached ? 1 : 0;
    }
    return bestOfSelected(share.first, selected, member);
}

/// Reads the high digits of a share's words. Returns the word of the greatest score if the low digits were
/// nothing, -1 if there is no word.
///
/// A product differs from what the high digits say by at most the length of the input times that of what
/// they leave out. A score is made of the product by steps none of which changes the order of two numbers:
/// the same steps make a bound of the score of a bound of the product.
int OutputSearch::guess(Share share, int excluded, Member &member) const
{
    const QuantizedMatrix &matrix = m_layer.matrix;
    const float scale = toReal(matrix);
    const std::int32_t codeSum = m_codeSum;
    const float codeLength = m_codeLength;
    int promising = -1;
    float greatest = never;
    for (int first = share.first; first < share.last; first += wordsAtATime) {
        const int size = std::min(wordsAtATime, share.last - first);
        std::int32_t *sums = member.highSums.data() + (first - share.first);
        float *bounds = member.bounds.data() + (first - share.first);
        float *guesses = member.guesses.data();
        m_kernels.multiplyDigits(m_codes.data(), matrix.depth, m_digits->high(first), nullptr, size, sums);
        const std::uint8_t *steps = m_digits->steps() + first;
        const float *leftOut = m_digits->leftOut() + first;
        const float *bias = m_bias + first;
        for (int index = 0; index < size; ++index) {
            const float product = static_cast<float>(2 * sums[index] - 15 * codeSum)
                * (0.5F * static_cast<float>(steps[index]));
            guesses[index] = product * scale + bias[index];
            bounds[index] = (product + codeLength * leftOut[index]) * scale + bias[index];
        }
        if (first <= excluded && excluded < first + size)
            guesses[excluded - first] = bounds[excluded - first] = never;
        const std::span block(guesses, std::size_t(size));
        if (const float here = greatestOf(block); here > greatest) {
            greatest = here;
            promising = first + int(std::find(block.begin(), block.end(), here) - block.begin());
        }
    }
    return promising;
}

BestWord OutputSearch::bestOfSelected(int firstOfShare, int selected, Member &member) const
{
    const float scale = toReal(m_layer.matrix);
    BestWord best;
    for (int first = 0; first < selected; first += wordsAtATime) {
        const int size = std::min(wordsAtATime, selected - first);
        const std::uint32_t *words = member.selected.data() + first;
        m_kernels.multiplyDigits(
            m_codes.data(), m_digits->depth(), m_digits->low(0), words, size, member.products.data());
        for (int index = 0; index < size; ++index) {
            const int word = int(words[index]);
            const std::int32_t step = m_digits->steps()[word];
            const std::int32_t product = step * member.highSums[std::size_t(word - firstOfShare)]
                + member.products[std::size_t(index)] + DigitMatrix::leastWeight(step) * m_codeSum;
            const BestWord found = {word, static_cast<float>(product) * scale + m_bias[word]};
            if (isBetter(found, best))
                best = found;
        }
    }
    return best;
}

} // namespace lumaphone::engine
