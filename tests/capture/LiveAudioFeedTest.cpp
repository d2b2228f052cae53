#include "capture/LiveAudioFeed.h"

#include "capture/FakeSpeechFramework.h"
#include "capture/RecordedPipelineEvents.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace liveaudiofeedtest {

using namespace lumaphone;
using namespace lumaphone::test;

class LiveAudioFeedTest : public QObject
{
    Q_OBJECT

private slots:
    void aSpeechFailureIsExplained_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("message");
        const QString siri = QStringLiteral("Apple Speech 錯誤：macOS 目前停用 Siri 與聽寫。請到系統設定開啟 "
                                            "Siri 或鍵盤聽寫後，再重新開始 Lumaphone。");
        QTest::newRow("other") << QStringLiteral("The engine broke.")
                               << QStringLiteral("Apple Speech 錯誤：The engine broke.");
        QTest::newRow("exact") << QStringLiteral("Siri and Dictation are disabled") << siri;
        QTest::newRow("lower case, inside")
            << QStringLiteral("error: siri and dictation are disabled!") << siri;
        QTest::newRow("half of it") << QStringLiteral("Siri is disabled")
                                    << QStringLiteral("Apple Speech 錯誤：Siri is disabled");
        QTest::newRow("empty") << QString() << QStringLiteral("Apple Speech 錯誤：");
    }

    void aSpeechFailureIsExplained()
    {
        QFETCH(const QString, description);
        QFETCH(const QString, message);
        QCOMPARE(speechFailureMessage(std::make_exception_ptr(SpeechFrameworkError(description))), message);
    }

    void aRecogniserThatIsTooSlowIsToldOnceAndWhenItHasCaughtUp()
    {
        const auto framework = std::make_shared<FakeSpeechFramework>();
        const auto detachedTasks = std::make_shared<DetachedTasks>();
        const RecordedPipelineEvents events;
        {
            const LiveAudioFeed feed(
                {framework, MainQueue::create(), detachedTasks, QLocale::c()}, events.handler());
            feed.watchPace(); // nothing listens yet
            test::waitFor(feed.transcriber().start({AppleSystemSpeechLanguage::english}));
            for (const int seconds : {0, 4, 6, 9, 3, 0, 0}) {
                framework->analyzer().unheard = std::chrono::seconds(seconds);
                feed.watchPace();
            }
            feed.transcriber().stop();
            framework->analyzer().unheard = std::chrono::seconds(9);
            feed.watchPace();
        }
        detachedTasks->wait();
        QCOMPARE(events.lines(), (QStringList {QStringLiteral("behind"), QStringLiteral("caught up")}));
    }

    void aForeignExceptionIsShownAsItIs()
    {
        QCOMPARE(speechFailureMessage(std::make_exception_ptr(std::runtime_error("no model"))),
            QStringLiteral("Apple Speech 錯誤：no model"));
    }
};

LUMAPHONE_TEST(LiveAudioFeedTest)

} // namespace liveaudiofeedtest

#include "LiveAudioFeedTest.moc"
