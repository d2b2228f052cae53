#pragma once

#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "support/CoroutineGate.h"

#include <exception>

namespace lumaphone::test {

/// A pipeline that the test drives.
class ScriptedPipeline final : public LumaphoneLiveAudioPipeline
{
public:
    QCoro::Task<> start() override
    {
        ++starts;
        co_await gate.passage();
        if (startError) {
            std::rethrow_exception(startError);
        }
    }
    QCoro::Task<> stop() override
    {
        ++stops;
        co_return;
    }

    CoroutineGate gate;
    std::exception_ptr startError;
    SystemAudioPipelineEventHandler onEvent;
    int starts = 0;
    int stops = 0;
};

} // namespace lumaphone::test
