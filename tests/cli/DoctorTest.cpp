#include "support/PrivateSoundServer.h"
#include "support/RunningProgram.h"
#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

namespace doctortest {

using namespace lumaphone::test;

namespace {

struct Answer
{
    int status;
    QString text;
};

/// The program on a machine without display, bus and models of the user's.
Answer doctor(const QStringList &arguments = {})
{
    const QTemporaryDir home;
    RunningProgram program(LUMAPHONE_CLI, QStringList {"doctor"} + arguments,
        {{"HOME", home.path()}, {"XDG_DATA_HOME", home.filePath("data")},
            {"XDG_CONFIG_HOME", home.filePath("config")}, {"DISPLAY", {}}, {"WAYLAND_DISPLAY", {}},
            {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus"}});
    if (!program.waitForEnd()) {
        return {-1, "the program does not end"};
    }
    return {program.exitCode(), QString::fromUtf8(program.output() + program.messages())};
}

} // namespace

/// The program itself, as a user starts it.
class DoctorTest : public QObject
{
    Q_OBJECT

private slots:
    void aMachineWithSoundIsWell()
    {
        PrivateSoundServer server;
        server.addOutput("speakers");
        const Answer answer = doctor();
        QVERIFY2(answer.status == 0, qPrintable(answer.text));
        for (const QString part : {"lumaphone-cli ", "Qt ", "聲音伺服器：", "（使用中）", "英文：",
                 "日文：尚未安裝", "models install ja-zh-Hant", "沒有圖形畫面", "D-Bus"}) {
            QVERIFY2(answer.text.contains(part), qPrintable(part + " is missing in " + answer.text));
        }
    }

    void aMachineWithoutSoundIsNot()
    {
        PrivateSoundServer server;
        server.kill();
        const Answer answer = doctor();
        QCOMPARE(answer.status, 1);
        QVERIFY2(answer.text.contains("✗ 無法連線到聲音伺服器："), qPrintable(answer.text));
        QVERIFY2(answer.text.contains("→ 請確認聲音伺服器"), qPrintable(answer.text));
    }

    void argumentsAreRefused()
    {
        QCOMPARE(doctor({"now"}).status, 2);
        QCOMPARE(doctor({"--help"}).status, 0);
    }
};

LUMAPHONE_TEST(DoctorTest)

} // namespace doctortest

#include "DoctorTest.moc"
