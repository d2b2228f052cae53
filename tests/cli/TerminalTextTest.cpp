#include "cli/TerminalText.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace terminaltexttest {

using namespace lumaphone::cli;

class TerminalTextTest : public QObject
{
    Q_OBJECT

private slots:
    void columnsAreCounted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::newRow("nothing") << QString() << 0;
        QTest::newRow("Latin") << QStringLiteral("caption") << 7;
        QTest::newRow("Japanese") << QStringLiteral("字幕です") << 8;
        QTest::newRow("Korean") << QStringLiteral("자막 one") << 8;
        QTest::newRow("combining accent") << QStringLiteral("e\u0301") << 1;
        QTest::newRow("decomposed kana") << QStringLiteral("か\u3099") << 2;
        QTest::newRow("a control character has no width") << QStringLiteral("a\u0007b") << 2;
    }

    void columnsAreCounted()
    {
        QFETCH(QString, text);
        QFETCH(int, columns);
        QCOMPARE(terminalColumns(text), columns);
    }

    void theTailIsKept_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("tail");
        QTest::newRow("fits") << QStringLiteral("hello") << 5 << QStringLiteral("hello");
        QTest::newRow("cut") << QStringLiteral("hello") << 4 << QStringLiteral("…llo");
        QTest::newRow("wide characters are not halved")
            << QStringLiteral("一二三") << 4 << QStringLiteral("…三");
        QTest::newRow("room for the ellipsis alone") << QStringLiteral("hello") << 1 << QStringLiteral("…");
        QTest::newRow("no room") << QStringLiteral("hello") << 0 << QString();
    }

    void theTailIsKept()
    {
        QFETCH(QString, text);
        QFETCH(int, columns);
        QFETCH(QString, tail);
        QCOMPARE(tailFitting(text, columns), tail);
    }

    void aRowHasNoControlCharacters()
    {
        QCOMPARE(singleRow(QStringLiteral("a\nb\tc\x1b[2Jd\u2028e")), QStringLiteral("a b c [2Jd e"));
    }

    void rowsAreKept()
    {
        QCOMPARE(
            severalRows(QStringLiteral("a\r\nb\tc\n\n\x1b]0;d\rrow")), QStringLiteral("a\nb c\n\n ]0;d row"));
    }
};

LUMAPHONE_TEST(TerminalTextTest)

} // namespace terminaltexttest

#include "TerminalTextTest.moc"
