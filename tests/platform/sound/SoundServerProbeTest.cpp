#include "platform/sound/SoundServerProbe.h"

#include "support/PrivateSoundServer.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace soundserverprobetest {

using namespace lumaphone;
using namespace lumaphone::test;

class SoundServerProbeTest : public QObject
{
    Q_OBJECT

private slots:
    void aServerTellsItsNameAndItsDevices()
    {
        PrivateSoundServer server;
        server.addOutput("first");
        server.addOutput("second");
        server.addMicrophone("desk");
        server.setDefaultOutput("second");
        server.setDefaultMicrophone("desk");
        const SoundServerFacts facts = probeSoundServer({});
        QCOMPARE(facts.problem, QString());
        QVERIFY2(facts.server.contains("pulseaudio", Qt::CaseInsensitive), qPrintable(facts.server));
        // The microphone hears an output of its own.
        QCOMPARE(facts.outputs.size(), 3);
        QCOMPARE(std::count_if(facts.outputs.begin(), facts.outputs.end(),
                     [](const SoundDeviceFacts &device) { return device.isDefault; }),
            1);
        QVERIFY(facts.outputs[1].isDefault);
        QCOMPARE(facts.inputs.size(), 1);
        QVERIFY(facts.inputs[0].isDefault);
    }

    void aServerWithoutDevicesHasNone()
    {
        const PrivateSoundServer server;
        const SoundServerFacts facts = probeSoundServer({});
        QCOMPARE(facts.problem, QString());
        QVERIFY(facts.inputs.isEmpty());
    }

    void aDeadServerIsAProblem()
    {
        PrivateSoundServer server;
        server.kill();
        const SoundServerFacts facts = probeSoundServer({});
        QVERIFY2(facts.problem.startsWith("無法連線到聲音伺服器："), qPrintable(facts.problem));
    }

    void aServerThatIsSilentIsNotWaitedForLongerThanAllowed()
    {
        PrivateSoundServer server;
        server.freeze();
        const SoundServerFacts facts = probeSoundServer({.timeLimit = std::chrono::milliseconds(200)});
        server.thaw();
        QVERIFY2(facts.problem.startsWith("聲音伺服器沒有回應"), qPrintable(facts.problem));
    }
};

LUMAPHONE_TEST(SoundServerProbeTest)

} // namespace soundserverprobetest

#include "SoundServerProbeTest.moc"
