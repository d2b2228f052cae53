#include "platform/display/WindowSystem.h"

#include "platform/display/Renderer.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace windowsystemtest {

using namespace lumaphone;

namespace {

using Windows = DisplayFacts::Windows;

QProcessEnvironment environmentOf(const QStringList &lines)
{
    QProcessEnvironment variables;
    for (const QString &line : lines) {
        variables.insert(line.section('=', 0, 0), line.section('=', 1));
    }
    return variables;
}

} // namespace

class WindowSystemTest : public QObject
{
    Q_OBJECT

private slots:
    void theWindowSystemIsTheOneWhosePanelsFloatBest_data()
    {
        QTest::addColumn<QStringList>("environment");
        QTest::addColumn<bool>("hasLayerShell");
        QTest::addColumn<QString>("platform");
        QTest::addColumn<int>("session");
        QTest::addColumn<int>("program");
        const QStringList both {"DISPLAY=:0", "WAYLAND_DISPLAY=wayland-0"};
        const QStringList wayland {"WAYLAND_DISPLAY=wayland-0"};
        const int none = int(Windows::none);
        const int x11 = int(Windows::x11);
        const int compositor = int(Windows::wayland);
        QTest::newRow("none") << QStringList {} << false << "" << none << none;
        QTest::newRow("X11") << QStringList {"DISPLAY=:0"} << false << "" << x11 << x11;
        QTest::newRow("Wayland with an X server") << both << false << "xcb;wayland" << compositor << x11;
        QTest::newRow("Wayland alone") << wayland << false << "" << compositor << compositor;
        QTest::newRow("an empty variable is none") << QStringList {"DISPLAY=", "WAYLAND_DISPLAY=wayland-0"}
                                                   << false << "" << compositor << compositor;
        QTest::newRow("a layer shell beside an X server")
            << both << true << "wayland;xcb" << compositor << compositor;
        QTest::newRow("a layer shell") << wayland << true << "wayland;xcb" << compositor << compositor;
        QTest::newRow("the user's choice counts")
            << both + QStringList {"QT_QPA_PLATFORM=xcb"} << true << "" << compositor << x11;
        QTest::newRow("a choice that cannot be had")
            << QStringList {"DISPLAY=:0", "QT_QPA_PLATFORM=wayland;xcb"} << false << "" << x11 << x11;
    }
    void theWindowSystemIsTheOneWhosePanelsFloatBest()
    {
        QFETCH(QStringList, environment);
        QFETCH(bool, hasLayerShell);
        const QProcessEnvironment variables = environmentOf(environment);
        QTEST(preferredWindowSystem(variables, [&] { return hasLayerShell; }), "platform");
        const DisplayFacts facts = displayFacts(variables, [&] { return hasLayerShell; });
        QTEST(int(facts.session), "session");
        QTEST(int(facts.program), "program");
    }

    void withoutAGraphicsCardTheWindowIsDrawnWithout_data()
    {
        QTest::addColumn<QStringList>("environment");
        QTest::addColumn<bool>("hasCard");
        QTest::addColumn<QString>("renderer");
        QTest::newRow("a card") << QStringList {} << true << "";
        QTest::newRow("none") << QStringList {} << false << "software";
        QTest::newRow("the user's choice counts") << QStringList {"QT_QUICK_BACKEND=rhi"} << false << "";
        QTest::newRow("also by another name") << QStringList {"LIBGL_ALWAYS_SOFTWARE=1"} << false << "";
    }
    void withoutAGraphicsCardTheWindowIsDrawnWithout()
    {
        QFETCH(QStringList, environment);
        QFETCH(bool, hasCard);
        QTEST(preferredRenderer(environmentOf(environment), [&] { return hasCard; }), "renderer");
    }

    void theDesktopIsNamedAsItNamesItself()
    {
        const QProcessEnvironment variables = environmentOf({"XDG_CURRENT_DESKTOP=KDE", "WAYLAND_DISPLAY=w"});
        const DisplayFacts facts = displayFacts(variables, [] { return true; });
        QCOMPARE(facts.desktop, QString("KDE"));
        QVERIFY(facts.hasLayerShell);
    }
};

LUMAPHONE_TEST(WindowSystemTest)

} // namespace windowsystemtest

#include "WindowSystemTest.moc"
