#pragma once

#include "translation/engine/Kernels.h"
#include "translation/engine/Shares.h"
#include "translation/engine/StudentModel.h"
#include "translation/engine/WorkerTeam.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lumaphone::engine {

/// The best word for a decoder state. Of equal scores the lower word wins.
struct BestWord
{
    int word = -1;
    float score = 0;
};

/// Finds the best word of an output layer for one input. Shares the words among the members of a team. Where
/// the layer's weights were split, exact kernels search all words by their digits: they find the same, and
/// read little more than half as many bytes.
class OutputSearch
{
public:
    /// `bias` is the one that the products of `kernels` need. It and the layer stay where they are.
    OutputSearch(const AffineLayer &layer, const float *bias, const Kernels &kernels, WorkerTeam &team);

    /// Only `candidates` count, all words if there are none named, and none of them that is `excluded` or not
    /// below `words`.
    BestWord best(const float *input, std::span<const std::uint32_t> candidates, int words, int excluded);

private:
    /// One member's room for its work.
    struct Member
    {
        std::vector<std::int32_t> products;
        std::vector<float> guesses;
        // For every word of a share, where digits are searched:
        std::vector<std::int32_t> highSums;
        std::vector<float> bounds; ///< its score is not above
        std::vector<std::uint32_t> selected;
    };

    BestWord bestOfRows(std::span<const std::uint32_t> candidates, Share share, int words, int excluded,
        Member &member) const;
    BestWord bestOfDigits(Share share, int excluded, Member &member) const;
    int guess(Share share, int excluded, Member &member) const;
    BestWord bestOfSelected(int firstOfShare, int selected, Member &member) const;

    const AffineLayer &m_layer;
    const float *m_bias;
    const Kernels &m_kernels;
    WorkerTeam &m_team;
    const DigitMatrix *m_digits; ///< null if they are not to be searched
    std::vector<Member> m_members;
    std::vector<BestWord> m_bestOfPiece;
    // The input at hand:
    std::vector<std::int8_t> m_codes;
    std::int32_t m_codeSum = 0;
    float m_codeLength = 0; ///< as a vector, rounded up
};

} // namespace lumaphone::engine
