#include "app/OffscreenTest.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/TestSound.h"
#include "support/VisibleItems.h"

#include <QGuiApplication>
#include <QTest>

namespace soundtestviewtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The window, before a session.
struct Window
{
    QTemporaryDir folder;
    Studio studio {folder.path()};

    Window() { studio.open(); }
    bool isListening() const { return studio.session.screenAudio->recording().isRunning(); }
    QString textOf(const QString &name) const
    {
        const QQuickItem *item = studio.find(name);
        return item == nullptr ? QString() : item->property("text").toString();
    }
    bool comes(const QString &name) const
    {
        return waitUntil([&] { return studio.find(name) != nullptr; });
    }
    bool goes(const QString &name) const
    {
        return waitUntil([&] { return studio.find(name) == nullptr; });
    }
};

} // namespace

/// The level in the status bar, and the sheet that tests the sound.
class SoundTestViewTest : public QObject
{
    Q_OBJECT

private slots:
    void theSheetListensWhileItIsOpen()
    {
        const Window window;
        QVERIFY(!window.isListening());
        window.studio.click("status.testSound");
        QVERIFY(window.comes("soundTest.device"));
        QVERIFY(waitUntil([&] { return window.isListening(); }));
        QVERIFY(waitUntil([&] { return window.textOf("soundTest.device") == "Speakers"; }));
        QCOMPARE(window.textOf("soundTest.message"), "播放一段影片或音樂試試看。");
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        QVERIFY(waitUntil([&] {
            window.studio.session.screenAudio->recording().deliver(sound.buffer());
            return window.studio.find("soundTest.level")->property("level").toInt()
                == SoundTestModel::highestLevel();
        }));
        QCOMPARE(window.textOf("soundTest.message"), "聽得到聲音，可以開始了。");
        QTest::keyClick(window.studio.window, Qt::Key_Escape);
        QVERIFY(!window.isListening());
        QVERIFY(window.goes("soundTest.device"));
    }

    void aSessionClosesTheSheet()
    {
        const Window window;
        window.studio.click("status.testSound");
        QVERIFY(window.comes("soundTest.device"));
        QVERIFY(waitUntil([&] { return window.isListening(); }));
        window.studio.live->startOrStop();
        QVERIFY(!window.isListening());
        QVERIFY(window.goes("soundTest.device"));
        settle();
        QVERIFY(window.studio.live->isRunning());
        QVERIFY(!window.studio.find("status.testSound"));
    }

    void theStatusBarShowsHowLoudItIsWhileItListens()
    {
        const Window window;
        QVERIFY(!window.studio.find("status.level"));
        window.studio.live->startOrStop();
        settle();
        QVERIFY(window.comes("status.level"));
        QCOMPARE(window.studio.find("status.level")->property("level").toInt(), 0);
        window.studio.session.controller->handlePipelineEvent(
            pipeline_event::AudioSample {{"320 frames", false, 1.0}});
        QCOMPARE(window.studio.find("status.level")->property("level").toInt(), 6);
        QVERIFY(
            waitUntil([&] { return window.studio.find("status.level")->property("level").toInt() == 0; }));
        window.studio.live->startOrStop();
        settle();
        QVERIFY(window.goes("status.level"));
    }
};

LUMAPHONE_OFFSCREEN_TEST(SoundTestViewTest)

} // namespace soundtestviewtest

#include "SoundTestViewTest.moc"
