#pragma once

#include "language/SpokenLanguage.h"

#include <chrono>
#include <cstdint>
#include <vector>

namespace lumaphone {

/// Decides in which language a decoded text is shown, so that the language does not flap while a segment
/// grows.
class LanguageArbiter
{
public:
    using Seconds = std::chrono::duration<double>;

    /// With more than one candidate, volatile texts are held back until there is so much speech, ...
    static constexpr Seconds shortestVolatile {1.0};
    /// ... a segment's language changes only after so much, ...
    static constexpr Seconds shortestChange {1.2};
    /// ... and when so many decodes in a row agree. Shorter segments keep the language of the one before.
    static constexpr int agreeingDecodes = 2;
    static constexpr Seconds shortestOwnLanguage {1.0};

    /// One decode of a segment.
    struct Hearing
    {
        std::int64_t segment = 0; ///< the same for all decodes of a segment
        Seconds speech {};
        bool isFinal = false;
        std::optional<SpokenLanguage> language; ///< as the network named it; none if it does not
        QString text;
    };

    /// `candidates`: not empty. A single one is always right.
    explicit LanguageArbiter(std::vector<SpokenLanguage> candidates);

    /// The language to show the text in. None: do not show this text. Final texts are held back only if they
    /// are in none of the candidates.
    std::optional<SpokenLanguage> decide(const Hearing &hearing);

private:
    std::optional<SpokenLanguage> decideFinal(const Hearing &hearing);
    std::optional<SpokenLanguage> decideVolatile(const Hearing &hearing);
    /// What the network says, or else the script.
    std::optional<SpokenLanguage> named(const Hearing &hearing) const;
    std::optional<SpokenLanguage> ifCandidate(std::optional<SpokenLanguage> language) const;

    const std::vector<SpokenLanguage> m_candidates;
    std::optional<SpokenLanguage> m_previous; ///< of the last final text
    std::optional<std::int64_t> m_segment; ///< under way
    std::optional<SpokenLanguage> m_shown; ///< of its last volatile text
    std::optional<SpokenLanguage> m_challenger;
    int m_agreeing = 0; ///< decodes in a row for the challenger
};

} // namespace lumaphone
