#include "base/Json.h"
#include "glossary/GlossaryCsv.h"
#include "glossary/GlossaryImport.h"
#include "glossary/GlossaryYaml.h"
#include "glossary/LumaphoneGlossaryDocument.h"
#include "support/Coroutines.h"
#include "support/CountedUuids.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace glossarylargefiletest {

using namespace lumaphone;

/// Fifty megabytes each. Work that grows faster than the file would not end within the time limit.
class GlossaryLargeFileTest : public QObject
{
    Q_OBJECT

private slots:
    void hundredThousandTermsInEveryFormat();
    void yamlOfOneKind_data();
    void yamlOfOneKind();
    void csvOfOneKind_data();
    void csvOfOneKind();
    void jsonOfOneKind_data();
    void jsonOfOneKind();
};

namespace {

constexpr qsizetype manyTerms = 100000;
constexpr qsizetype manyBytes = 50'000'000;

QString repeated(const QByteArray &piece)
{
    const QString text = QString::fromUtf8(piece);
    return text.repeated(manyBytes / text.size());
}

} // namespace

void GlossaryLargeFileTest::hundredThousandTermsInEveryFormat()
{
    const QString filler = QStringLiteral("譯").repeated(160);
    QList<LumaphoneGlossaryTerm> terms;
    QString csv;
    for (qsizetype i = 0; i < manyTerms; ++i) {
        terms.append(test::translated(QStringLiteral("term %1").arg(i), filler));
        csv.append(terms.back().source + QLatin1Char(',') + filler + QLatin1Char('\n'));
    }
    const QStringList expected = test::lines(terms);
    QCOMPARE(test::lines(decodeCSV(csv, test::countedUuids())), expected);
    QCOMPARE(test::lines(decodeYAML(encodeYAML(terms), test::countedUuids())), expected);
    QCOMPARE(decodeGlossaryJson(LumaphoneGlossaryDocument {terms}.encoded()), terms);
}

void GlossaryLargeFileTest::yamlOfOneKind_data()
{
    QTest::addColumn<QByteArray>("piece");
    for (const char *piece : {"x", "\n", ":", "\"", "\\\"", " ", "\t \r\n", "- ", "- \n", "-\n", "a:\n", "#",
             "terms:\n", "source:\n", "- source: a\n", "\u2028"}) {
        QTest::newRow(QByteArray(piece).toPercentEncoding(" :-{}[]#\"\\").constData()) << QByteArray(piece);
    }
}

void GlossaryLargeFileTest::yamlOfOneKind()
{
    QFETCH(QByteArray, piece);
    QVERIFY(decodeYAML(repeated(piece), test::countedUuids()).isEmpty());
}

void GlossaryLargeFileTest::csvOfOneKind_data()
{
    QTest::addColumn<QByteArray>("piece");
    QTest::addColumn<int>("terms");
    QTest::newRow("letters") << QByteArray("x") << 0;
    QTest::newRow("line feeds") << QByteArray("\n") << 0;
    QTest::newRow("commas") << QByteArray(",") << 1;
    QTest::newRow("quotes") << QByteArray("\"") << 0;
    QTest::newRow("quoted commas") << QByteArray("\",\"") << 0;
    QTest::newRow("blanks") << QByteArray(" ") << 0;
    QTest::newRow("blanks and commas") << QByteArray(" ,") << 1;
    QTest::newRow("lines without a comma") << QByteArray("a\n") << 0;
}

void GlossaryLargeFileTest::csvOfOneKind()
{
    QFETCH(QByteArray, piece);
    QTEST(int(decodeCSV(repeated(piece), test::countedUuids()).size()), "terms");
}

void GlossaryLargeFileTest::jsonOfOneKind_data()
{
    QTest::addColumn<QByteArray>("piece");
    for (const char *piece : {"[", "{\"a\":", "[[],", "\"", "\"\\", "1", "]"}) {
        QTest::newRow(QByteArray(piece).toPercentEncoding(" :-{}[]#\"\\").constData()) << QByteArray(piece);
    }
}

void GlossaryLargeFileTest::jsonOfOneKind()
{
    QFETCH(QByteArray, piece);
    const QByteArray bytes = piece.repeated(manyBytes / piece.size());
    const auto error = test::thrownBy<json::DecodingError>([&] { decodeGlossaryJson(bytes); });
    QVERIFY(error);
    QVERIFY(error->errorDescription().size() < 400);
}

LUMAPHONE_TEST(GlossaryLargeFileTest)

} // namespace glossarylargefiletest

#include "GlossaryLargeFileTest.moc"
