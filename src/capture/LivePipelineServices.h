#pragma once

#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "platform/SpeechFramework.h"

#include <QLocale>

#include <memory>

namespace lumaphone {

/// What every pipeline needs besides its source of sound.
struct LivePipelineServices
{
    std::shared_ptr<SpeechFramework> speechFramework;
    std::shared_ptr<MainQueue> mainQueue;
    /// Ends recognisers behind a stop(). Whoever makes it lets it die after the pipelines.
    std::shared_ptr<DetachedTasks> detachedTasks;
    QLocale locale; ///< writes the numbers of sample summaries
};

} // namespace lumaphone
