#include "platform/sound/RecordingTest.h"

#include <QDir>

namespace lumaphone::test {

void RecordingTest::setUp()
{
    m_server = std::make_unique<PrivateSoundServer>();
    m_queue = std::make_unique<SerialQueue>("test.samples");
    m_sound = std::make_unique<RecordedSound>(*m_queue);
}

void RecordingTest::tearDown()
{
    m_recorder.reset();
    m_queue.reset();
    m_sound.reset();
    m_server.reset();
}

int RecordingTest::threadCount()
{
    return static_cast<int>(
        QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

} // namespace lumaphone::test
