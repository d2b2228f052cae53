#include "speech/protocol/RuntimeVersion.h"

#include <charconv>

namespace lumaphone::host {

std::optional<RuntimeVersion> parseRuntimeVersion(const std::string &text)
{
    RuntimeVersion version;
    const char *at = text.data();
    const char *const end = at + text.size();
    for (int *const number : {&version.major, &version.minor, &version.patch}) {
        if (number != &version.major && (at == end || *at++ != '.')) {
            return std::nullopt;
        }
        const auto [rest, error] = std::from_chars(at, end, *number);
        if (error != std::errc() || *number < 0) {
            return std::nullopt;
        }
        at = rest;
    }
    return at == end ? std::optional(version) : std::nullopt;
}

} // namespace lumaphone::host
