#include "session/revision/RevisionRule.h"

namespace lumaphone {

bool fallbackIsRevisionOfCurrentPartial(const QString &, const QString &)
{
    return false;
}

} // namespace lumaphone
