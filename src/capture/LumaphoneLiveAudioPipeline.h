#pragma once

#include <QCoroTask>

namespace lumaphone {

/// One source of sound with its speech recognition, as the session's owner sees it. Main thread.
class LumaphoneLiveAudioPipeline
{
public:
    virtual ~LumaphoneLiveAudioPipeline() = default;
    /// Returns when sound is captured and recognised. Throws an error with a text for the user; what was
    /// already started then keeps running until stop(). A stop() meanwhile ends the start: it returns without
    /// an error, and nothing runs.
    virtual QCoro::Task<> start() = 0;
    /// May be called in any state and more than once. Never fails.
    virtual QCoro::Task<> stop() = 0;
};

} // namespace lumaphone
