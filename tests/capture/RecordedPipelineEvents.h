#pragma once

#include "capture/SystemAudioPipelineEvent.h"

#include <QStringList>

#include <memory>
#include <mutex>

namespace lumaphone::test {

/// Keeps what a pipeline tells its owner. Copies share the same record. Any thread.
class RecordedPipelineEvents
{
public:
    SystemAudioPipelineEventHandler handler() const;
    /// One line per event: "audio <summary>", "english final hello", "behind", "caught up", "failed
    /// <message>".
    QStringList lines() const;
    int count() const;

private:
    struct Record
    {
        std::mutex mutex;
        QStringList lines;
    };

    std::shared_ptr<Record> m_record = std::make_shared<Record>();
};

} // namespace lumaphone::test
