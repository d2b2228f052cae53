#pragma once

#include <optional>
#include <string>

namespace lumaphone::host {

/// A version of the runtime library, such as 1.13.8.
struct RuntimeVersion
{
    int major = 0;
    int minor = 0;
    int patch = 0;

    // The linter takes the zero in the generated comparison for a pointer.
    auto operator<=>(const RuntimeVersion &) const = default; // NOLINT(modernize-use-nullptr)
};

/// The layout of the library's structures is known from this version on.
constexpr RuntimeVersion oldestRuntime {1, 12, 35};
/// It was checked up to this one.
constexpr RuntimeVersion newestKnownRuntime {1, 13, 8};

/// None unless the text is three numbers with full stops between them.
std::optional<RuntimeVersion> parseRuntimeVersion(const std::string &text);

} // namespace lumaphone::host
