#pragma once

#include "base/MainQueue.h"
#include "platform/sound/RecordedSound.h"
#include "support/PrivateSoundServer.h"

#include <QObject>

#include <memory>

namespace lumaphone::test {

/// What the tests of recording have in common: a sound server of their own, and what a recording delivers.
class RecordingTest : public QObject
{
protected:
    /// Before each test.
    void setUp();
    /// After each test.
    void tearDown();

    /// Of this process.
    static int threadCount();

    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<PrivateSoundServer> m_server;
    std::unique_ptr<SerialQueue> m_queue;
    std::unique_ptr<RecordedSound> m_sound;
    std::unique_ptr<SoundRecorder> m_recorder;
};

} // namespace lumaphone::test
