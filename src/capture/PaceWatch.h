#pragma once

#include <chrono>
#include <optional>

namespace lumaphone {

/// Notices when recognition falls behind the sound, and when it has caught up: one notice each.
class PaceWatch
{
public:
    /// Sound that waits for longer is worth telling.
    static constexpr std::chrono::milliseconds longestDelay = std::chrono::seconds(5);
    /// Caught up is who has less than this before him.
    static constexpr std::chrono::milliseconds shortDelay = std::chrono::seconds(1);

    /// `waiting`: sound that is not recognised yet. Whether recognition is behind, when that has changed.
    std::optional<bool> note(std::chrono::milliseconds waiting)
    {
        if (m_isBehind ? waiting >= shortDelay : waiting <= longestDelay) {
            return std::nullopt;
        }
        m_isBehind = !m_isBehind;
        return m_isBehind;
    }

private:
    bool m_isBehind = false;
};

} // namespace lumaphone
