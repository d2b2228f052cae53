#pragma once

namespace lumaphone {

/// Why there is no session, or none any more.
enum class SessionFailure {
    unsavedTranscript, ///< the lines of the last one have to be saved or cleared first
    providerNotReady, ///< the user's translation service is not set up
    startFailed,
    interrupted, ///< it ended by itself
};

} // namespace lumaphone
