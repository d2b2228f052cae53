#include "glossary/GlossaryCsv.h"

#include "support/CountedUuids.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace glossarycsvtest {

using namespace lumaphone;

class GlossaryCsvTest : public QObject
{
    Q_OBJECT

private slots:
    void splitsALine_data();
    void splitsALine();
    void stopsAtTheWantedNumberOfFields();
    void readsLines_data();
    void readsLines();
    void everyTermHasAFreshIdentity();
};

void GlossaryCsvTest::splitsALine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("fields");
    QTest::newRow("two") << "a,b" << test::strings({"a", "b"});
    QTest::newRow("one") << "a" << test::strings({"a"});
    QTest::newRow("none") << "" << test::strings({""});
    QTest::newRow("a comma at the end") << "a," << test::strings({"a", ""});
    QTest::newRow("only commas") << ",," << test::strings({"", "", ""});
    QTest::newRow("a comma in quotes") << "\"a, b\",c" << test::strings({"a, b", "c"});
    QTest::newRow("quotes amid a field") << "a\",\"b,c" << test::strings({"a,b", "c"});
    QTest::newRow("a doubled quote vanishes") << "\"say \"\"hi\"\"\",b" << test::strings({"say hi", "b"});
    QTest::newRow("an empty quoted field") << "\"\",b" << test::strings({"", "b"});
    QTest::newRow("an unclosed quote runs to the end") << "a,\"b,c" << test::strings({"a", "b,c"});
    QTest::newRow("a lone quote") << "\"" << test::strings({""});
    QTest::newRow("a backslash means nothing") << "\"a\\\",b\"" << test::strings({"a\\", "b"});
    QTest::newRow("blanks around") << " a ,\t b\u3000" << test::strings({"a", "b"});
    QTest::newRow("blanks in quotes are trimmed, too") << "\" a \",b" << test::strings({"a", "b"});
    QTest::newRow("blanks inside") << "a b,c  d" << test::strings({"a b", "c  d"});
    QTest::newRow("other separators") << "a;b\tc|d" << test::strings({"a;b\tc|d"});
    QTest::newRow("full-width comma") << "a，b" << test::strings({"a，b"});
    QTest::newRow("outside the basic plane") << "😀,𠮷" << test::strings({"😀", "𠮷"});
}

void GlossaryCsvTest::splitsALine()
{
    QFETCH(QString, line);
    QFETCH(QStringList, fields);
    QCOMPARE(parseCSVLine(line), fields);
}

void GlossaryCsvTest::stopsAtTheWantedNumberOfFields()
{
    QCOMPARE(parseCSVLine(u"a,b,c,d", 3), test::strings({"a", "b", "c"}));
    QCOMPARE(parseCSVLine(u"a,b,c", 3), test::strings({"a", "b", "c"}));
    QCOMPARE(parseCSVLine(u"a,b,", 3), test::strings({"a", "b", ""}));
    QCOMPARE(parseCSVLine(u"a,b", 3), test::strings({"a", "b"}));
    QCOMPARE(parseCSVLine(u"a,b,c", 1), test::strings({"a"}));
}

void GlossaryCsvTest::readsLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("terms");
    const QString ab = QStringLiteral("a|b|translate||true|false");
    const QString cd = QStringLiteral("c|d|translate||true|false");
    QTest::newRow("empty") << "" << QStringList {};
    QTest::newRow("two fields") << "a,b" << QStringList {ab};
    QTest::newRow("a line feed at the end") << "a,b\n" << QStringList {ab};
    QTest::newRow("preserve") << "a,b,preserve" << test::strings({"a|b|preserve||true|false"});
    QTest::newRow("preserve among blanks") << "a,b, preserve " << test::strings({"a|b|preserve||true|false"});
    QTest::newRow("preserve in quotes") << "a,b,\"preserve\"" << test::strings({"a|b|preserve||true|false"});
    QTest::newRow("capital Preserve") << "a,b,Preserve" << QStringList {ab};
    QTest::newRow("another mode") << "a,b,keep" << QStringList {ab};
    QTest::newRow("an empty mode") << "a,b," << QStringList {ab};
    QTest::newRow("translate") << "a,b,translate" << QStringList {ab};
    QTest::newRow("equal fields do not mean preserve")
        << "a,a" << test::strings({"a|a|translate||true|false"});
    QTest::newRow("more fields") << "a,b,preserve,note,false,true"
                                 << test::strings({"a|b|preserve||true|false"});
    QTest::newRow("one field") << "a\nc,d" << QStringList {cd};
    QTest::newRow("empty fields") << "," << test::strings({"||translate||true|false"});
    QTest::newRow("an empty target") << "a," << test::strings({"a||translate||true|false"});
    QTest::newRow("blank lines") << "\n\na,b\n\n \n\nc,d\n\n" << QStringList {ab, cd};
    QTest::newRow("all newline characters") << "a,b\nc,d\ra,b\r\nc,d\va,b\fc,d\u0085a,b\u2028c,d\u2029a,b"
                                            << QStringList {ab, cd, ab, cd, ab, cd, ab, cd, ab};
    QTest::newRow("quotes do not protect newlines") << "\"a\nc\",d" << QStringList {};
    QTest::newRow("a header") << "source,target\na,b" << QStringList {ab};
    QTest::newRow("a header with a mode") << "source,target,mode\na,b" << QStringList {ab};
    QTest::newRow("a capital header") << "SOURCE,target\na,b" << QStringList {ab};
    QTest::newRow("source within the field") << "The Sources!,b\nc,d" << QStringList {cd};
    QTest::newRow("source in the second field")
        << "target,source" << test::strings({"target|source|translate||true|false"});
    QTest::newRow("a header on the second line")
        << "a,b\nsource,target"
        << test::strings({"a|b|translate||true|false", "source|target|translate||true|false"});
    QTest::newRow("a header after empty lines") << "\n\r\nsource,target\na,b" << QStringList {ab};
    QTest::newRow("a header after a line of blanks")
        << " \nsource,target" << test::strings({"source|target|translate||true|false"});
    QTest::newRow("a header of one field counts as the first line")
        << "source\nsource,target" << test::strings({"source|target|translate||true|false"});
    QTest::newRow("an accent makes another letter")
        << "sourcé,b" << test::strings({"sourcé|b|translate||true|false"});
    QTest::newRow("a decomposed accent, too")
        << "source\u0301,b" << test::strings({"source\u0301|b|translate||true|false"});
}

void GlossaryCsvTest::readsLines()
{
    QFETCH(QString, text);
    QFETCH(QStringList, terms);
    QCOMPARE(test::lines(decodeCSV(text, test::countedUuids())), terms);
}

void GlossaryCsvTest::everyTermHasAFreshIdentity()
{
    const auto terms = decodeCSV(u"source,target\na,b\nx\na,b", test::countedUuids());
    QCOMPARE(terms.size(), 2);
    QCOMPARE(terms[0].id, test::countedUuid(1));
    QCOMPARE(terms[1].id, test::countedUuid(2));
}

LUMAPHONE_TEST(GlossaryCsvTest)

} // namespace glossarycsvtest

#include "GlossaryCsvTest.moc"
