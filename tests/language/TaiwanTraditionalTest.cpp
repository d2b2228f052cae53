#include "language/TaiwanTraditional.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace taiwantraditionaltest {

using namespace lumaphone;

class TaiwanTraditionalTest : public QObject
{
    Q_OBJECT

private slots:
    void mandarinIsWrittenAsInTaiwan_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("characters") << "今天天气很好"
                                    << "今天天氣很好";
        QTest::newRow("one character, two words") << "头发发展"
                                                  << "頭髮發展";
        QTest::newRow("words of Taiwan") << "请打开鼠标和网络软件"
                                         << "請開啟滑鼠和網路軟體";
        QTest::newRow("variants of Taiwan") << "这里"
                                            << "這裡";
        QTest::newRow("already so") << "這是字幕測試"
                                    << "這是字幕測試";
        QTest::newRow("with Latin and marks") << "用 OpenAI 的信息。"
                                              << "用 OpenAI 的資訊。";
        QTest::newRow("outside the first plane") << "𠮷野"
                                                 << "𠮷野";
    }
    void mandarinIsWrittenAsInTaiwan()
    {
        QFETCH(QString, text);
        QTEST(TaiwanTraditional().convert(text), "expected");
    }
};

LUMAPHONE_TEST(TaiwanTraditionalTest)

} // namespace taiwantraditionaltest

#include "TaiwanTraditionalTest.moc"
