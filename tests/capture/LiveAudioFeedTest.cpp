#include "capture/LiveAudioFeed.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace liveaudiofeedtest {

using namespace lumaphone;

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

    void aForeignExceptionIsShownAsItIs()
    {
        QCOMPARE(speechFailureMessage(std::make_exception_ptr(std::runtime_error("no model"))),
            QStringLiteral("Apple Speech 錯誤：no model"));
    }
};

LUMAPHONE_TEST(LiveAudioFeedTest)

} // namespace liveaudiofeedtest

#include "LiveAudioFeedTest.moc"
