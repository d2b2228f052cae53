#include "base/CoreDumps.h"

#include <QString>

#include <sys/resource.h>

namespace lumaphone {

void forgoCoreDumps()
{
    if (qEnvironmentVariable("LUMAPHONE_CORE_DUMPS") == QLatin1String("1")) {
        return;
    }
    // One byte: a collector of dumps is fed whatever the limit, but for this one.
    const rlimit one {1, 1};
    ::setrlimit(RLIMIT_CORE, &one);
}

} // namespace lumaphone
