#pragma once

#include "speech/host/HostFailure.h"

#include <exception>
#include <string>

namespace lumaphone::host {

/// Calls the runtime library. What it throws becomes a HostFailure of that kind.
template<typename Call> auto callRuntime(FailureKind kind, const Call &call)
{
    try {
        return call();
    } catch (const std::exception &error) {
        throw HostFailure(kind, error.what());
    }
}

/// The same for a call that makes an object of a file: it is a failure as well if it makes none.
template<typename Make> auto makeOf(const std::string &file, FailureKind kind, const Make &make)
{
    const auto object = callRuntime(kind, make);
    if (!object) {
        throw HostFailure(kind, file);
    }
    return object;
}

} // namespace lumaphone::host
