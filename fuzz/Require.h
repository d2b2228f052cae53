#pragma once

#include <cstdio>
#include <cstdlib>

namespace lumaphone::fuzz {

/// Ends the process, which a fuzzer reports as a finding, if a property does not hold.
inline void require(bool holds, const char *property)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", property);
        std::abort();
    }
}

} // namespace lumaphone::fuzz
