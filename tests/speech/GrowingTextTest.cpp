#include "speech/StableText.h"

#include <QTest>

using namespace lumaphone;

class StableTextTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyWhatTwoDecodesAgreeOnIsShown_data()
    {
        QTest::addColumn<QStringList>("decodes");
        QTest::addColumn<QStringList>("expected"); // empty: nothing new is shown
        QTest::newRow("one decode") << QStringList {"good"} << QStringList {""};
        QTest::newRow("growing") << QStringList {"good", "good morning", "good morning everyone"}
                                 << QStringList {"", "good", "good morning"};
        QTest::newRow("the same again") << QStringList {"good morning", "good morning", "good morning"}
                                        << QStringList {"", "good morning", ""};
        QTest::newRow("an unfinished word")
            << QStringList {"good mor", "good morning"} << QStringList {"", "good"};
        QTest::newRow("another word")
            << QStringList {"good moaning", "good morning all"} << QStringList {"", "good"};
        QTest::newRow("nothing in common")
            << QStringList {"現天", "she天", "今天天气"} << QStringList {"", "", ""};
        QTest::newRow("Han") << QStringList {"今天天", "今天天气很", "今天天气很好"}
                             << QStringList {"", "今天天", "今天天气很"};
        QTest::newRow("Hangul") << QStringList {"오늘은 날", "오늘은 날씨가", "오늘은 날씨가 좋습"}
                                << QStringList {"", "오늘은", "오늘은 날씨가"};
        QTest::newRow("a shorter agreement does not take back") << QStringList {
            "a b c d", "a b c d", "a b x", "a b c d e"} << QStringList {"", "a b c d", "", ""};
        QTest::newRow("a contradiction does")
            << QStringList {"a b", "a b", "x y z", "x y z"} << QStringList {"", "a b", "", "x y z"};
        QTest::newRow("decomposed and composed")
            << QStringList {"caf\u00e9 au", "cafe\u0301 au lait"} << QStringList {"", "caf\u00e9 au"};
        QTest::newRow("empty decodes") << QStringList {"", "", "a"} << QStringList {"", "", ""};
    }
    void onlyWhatTwoDecodesAgreeOnIsShown()
    {
        QFETCH(QStringList, decodes);
        QFETCH(QStringList, expected);
        StableText stable;
        for (qsizetype i = 0; i < decodes.size(); ++i) {
            QCOMPARE(stable.decoded(0, decodes[i]).value_or(QString()), expected[i]);
        }
    }

    void anotherSegmentStartsAfresh()
    {
        StableText stable;
        QVERIFY(!stable.decoded(0, "a b"));
        QVERIFY(!stable.decoded(16000, "a b"));
        QVERIFY(stable.decoded(16000, "a b"));
    }
};

QTEST_GUILESS_MAIN(StableTextTest)
#include "StableTextTest.moc"
