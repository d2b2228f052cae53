#include "base/LocalizedDate.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace localizeddatetest {

using namespace lumaphone;

class LocalizedDateTest : public QObject
{
    Q_OBJECT

private slots:
    void datesAreWrittenAsTheirReadersDo_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QTime>("time");
        QTest::addColumn<QString>("text");
        QTest::newRow("Taiwan, morning") << "zh_TW" << QTime(9, 30) << "2026/3/1 上午9:30";
        QTest::newRow("Taiwan, afternoon") << "zh_TW" << QTime(15, 5) << "2026/3/1 下午3:05";
        QTest::newRow("United States") << "en_US" << QTime(15, 5) << "3/1/26 3:05 PM";
        QTest::newRow("Germany") << "de_DE" << QTime(15, 5) << "01.03.26 15:05";
        QTest::newRow("Japan") << "ja_JP" << QTime(15, 5) << "2026/03/01 15:05";
    }
    void datesAreWrittenAsTheirReadersDo()
    {
        QFETCH(QString, locale);
        QFETCH(QTime, time);
        const QDateTime date(QDate(2026, 3, 1), time);
        QTEST(localizedDateText(date.toUTC(), QLocale(locale)), "text");
    }
};

LUMAPHONE_TEST(LocalizedDateTest)

} // namespace localizeddatetest

#include "LocalizedDateTest.moc"
