#pragma once

#include <functional>

namespace lumaphone {

enum class KeychainCall {
    reads,
    changes,
};

/// Runs `work`, which blocks until the keychain or the user whom it asks has answered, and then `done`: here
/// and now, or `work` on another thread and `done` on the main thread. The order of calling is kept.
using KeychainRunner
    = std::function<void(KeychainCall call, std::function<void()> work, std::function<void()> done)>;

/// On the calling thread, which waits.
inline void runAtOnce(
    KeychainCall /*call*/, const std::function<void()> &work, const std::function<void()> &done)
{
    work();
    done();
}

} // namespace lumaphone
