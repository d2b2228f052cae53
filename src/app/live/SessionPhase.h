#pragma once

namespace lumaphone {

/// What the live views need to know of a session.
struct SessionFacts
{
    bool isStarting = false;
    bool isRunning = false;
    bool hasLines = false;
    bool isSaved = false; ///< the library has this session
    bool isRestored = false; ///< the lines come from the draft of a session that was interrupted
    bool isWithoutSound = false; ///< it runs, and nothing has been heard for a while
    bool isBehind = false; ///< it runs, and recognition is slower than the sound
    bool hasFailed = false; ///< it could not start, or ended by itself

    bool operator==(const SessionFacts &) const = default;
};

/// Where a session stands.
enum class SessionPhase { idle, starting, running, runningWithoutSound, unsaved, saved, restored, failed };

SessionPhase sessionPhase(const SessionFacts &facts);

/// Whether there are lines that a new session would lose.
bool hasUnsavedTranscript(const SessionFacts &facts);
/// Whether the lines of a session that has ended are looked at: then they can be saved, dropped or continued
/// with a new session.
bool isReviewing(const SessionFacts &facts);

} // namespace lumaphone
