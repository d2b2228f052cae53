#include "app/live/SessionPhase.h"

namespace lumaphone {

using enum SessionPhase;

SessionPhase sessionPhase(const SessionFacts &facts)
{
    if (facts.isStarting) {
        return starting;
    }
    if (facts.isRunning) {
        return facts.isWithoutSound ? runningWithoutSound : running;
    }
    if (facts.hasFailed) {
        return failed;
    }
    if (!facts.hasLines) {
        return idle;
    }
    if (facts.isSaved) {
        return saved;
    }
    return facts.isRestored ? restored : unsaved;
}

bool hasUnsavedTranscript(const SessionFacts &facts)
{
    return !facts.isRunning && !facts.isSaved && facts.hasLines;
}

bool isReviewing(const SessionFacts &facts)
{
    return !facts.isRunning && !facts.isStarting && facts.hasLines;
}

} // namespace lumaphone
