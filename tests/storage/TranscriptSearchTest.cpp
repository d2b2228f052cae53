#include "storage/TranscriptSearch.h"

#include "support/CountedUuids.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace transcriptsearchtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

TranscriptRecordMetadata record(uint number, const QString &searchText)
{
    TranscriptRecordMetadata metadata;
    metadata.id = countedUuid(number);
    metadata.searchText = searchText;
    return metadata;
}

} // namespace

class TranscriptSearchTest : public QObject
{
    Q_OBJECT

private slots:
    void caseDoesNotMatter_data();
    void caseDoesNotMatter();
    void aBlankQueryFindsEverythingInOrder();
    void titleAndNoteAreSearchedByThemselves();
    void whatChangedIsSearchedAnew();
    void whatIsPreparedIsNotPreparedAgain();
    void moreAndFewerLettersFindTheirRecords();
};

void TranscriptSearchTest::caseDoesNotMatter_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("query");
    QTest::addColumn<bool>("isFound");
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    const auto row
        = [](const char *name, const QLocale &locale, const char *text, const char *query, bool isFound) {
              QTest::newRow(name) << locale << QString::fromUtf8(text) << QString::fromUtf8(query) << isFound;
          };
    row("same", english, "Hello world", "lo wo", true);
    row("capitals", english, "Hello", "HELLO", true);
    row("small letters", english, "HELLO", "hello", true);
    row("blanks around the query", english, "Hello", " hello\n", true);
    row("not there", english, "Hello", "help", false);
    row("han", english, "今天天氣很好", "天氣", true);
    row("voiced kana are other letters", english, "ハハ", "パパ", false);
    row("accents are other letters", english, "resume", "résumé", false);
    row("composed finds decomposed", english, "re\u0301sume\u0301", "RÉSUMÉ", true);
    row("greek final sigma", english, "ΟΔΟΣ", "οδος", true);
    row("english i", english, "ISTANBUL", "istanbul", true);
    row("turkish dotted i", turkish, "İSTANBUL", "istanbul", true);
    row("turkish I is not dotted", turkish, "ISPARTA", "isparta", false);
    row("turkish dotless i", turkish, "ISPARTA", "ısparta", true);
    row("han, kana and capitals", english, "会議のAlpha版、한국어", "のALPHA版、한국어", true);
    row("decomposed kana", english, "会議か\u3099", "議が", true);
    row("composed kana by decomposed", english, "会議が", "か\u3099", true);
    row("decomposed hangul", english, "\u1112\u1161\u11ab국", "한국", true);
    row("full-width capitals", english, "会議ＡＢ", "ａｂ", true);
    row("sharp s is not folded", english, "Straße", "STRASSE", false);
    row("turkish capitals among han", turkish, "会議 I", "i", false);
    row("across a line break", english, "one\ntwo", "one\ntwo", true);
    row("a pattern is a text", english, "a.b", "a*b", false);
}

void TranscriptSearchTest::caseDoesNotMatter()
{
    QFETCH(const QLocale, locale);
    QFETCH(const QString, text);
    QFETCH(const QString, query);
    QFETCH(const bool, isFound);
    TranscriptSearch search(locale);
    QCOMPARE(search.filtered({record(1, text)}, query).size(), isFound ? 1 : 0);
}

void TranscriptSearchTest::moreAndFewerLettersFindTheirRecords()
{
    TranscriptSearch search(QLocale::c());
    QList records {record(1, QStringLiteral("abc")), record(2, QStringLiteral("xbc")),
        record(3, QStringLiteral("ab")), record(4, QStringLiteral("none"))};
    const auto found = [&](const char *query) {
        QStringList texts;
        for (const TranscriptRecordMetadata &each : search.filtered(records, QString::fromUtf8(query))) {
            texts.append(each.searchText);
        }
        return texts.join(QLatin1Char(' '));
    };
    QCOMPARE(found("b"), QStringLiteral("abc xbc ab"));
    QCOMPARE(found("bc"), QStringLiteral("abc xbc"));
    QCOMPARE(found("abc"), QStringLiteral("abc"));
    QCOMPARE(found("ab"), QStringLiteral("abc ab"));
    QCOMPARE(found("x"), QStringLiteral("xbc"));
    QCOMPARE(found(""), QStringLiteral("abc xbc ab none"));
    QCOMPARE(found("xb"), QStringLiteral("xbc"));
    records.append(record(5, QStringLiteral("xbd")));
    QCOMPARE(found("xb"), QStringLiteral("xbc xbd"));
    QCOMPARE(found("xbd"), QStringLiteral("xbd"));
    records[4] = record(5, QStringLiteral("abcxbde"));
    search.forget(records[4].id);
    QCOMPARE(found("xbde"), QStringLiteral("abcxbde"));
}

void TranscriptSearchTest::whatIsPreparedIsNotPreparedAgain()
{
    using namespace std::chrono_literals;
    TranscriptSearch search(QLocale::c());
    const QList records {record(1, QStringLiteral("a")), record(2, QStringLiteral("b"))};
    QVERIFY(search.prepare({}, 0ms));
    QVERIFY(!search.prepare(records, 0ms));
    QVERIFY(search.prepare(records, 1h));
    QVERIFY(search.prepare(records, 0ms));
    QCOMPARE(search.filtered(records, QStringLiteral("B")), QList {records[1]});
    search.forget(records[1].id);
    QVERIFY(!search.prepare(records, 0ms));
}

void TranscriptSearchTest::aBlankQueryFindsEverythingInOrder()
{
    TranscriptSearch search(QLocale::c());
    const QList records {
        record(1, QStringLiteral("b")), record(2, QStringLiteral("a")), record(3, QStringLiteral("ab"))};
    QVERIFY(search.filtered(records, QString()) == records);
    QVERIFY(search.filtered(records, QStringLiteral(" \u3000\n")) == records);
    QVERIFY(search.filtered(records, QStringLiteral("a")) == records.mid(1));
}

void TranscriptSearchTest::titleAndNoteAreSearchedByThemselves()
{
    TranscriptRecordMetadata metadata = record(1, QStringLiteral("only lines"));
    metadata.title = QStringLiteral("Title");
    metadata.note = QStringLiteral("Note");
    TranscriptSearch search(QLocale::c());
    for (const char *query : {"title", "NOTE", "lines"}) {
        QCOMPARE(search.filtered({metadata}, QString::fromLatin1(query)).size(), 1);
    }
    QVERIFY(search.filtered({metadata}, QStringLiteral("TitleNote")).isEmpty());
    QVERIFY(search.filtered({metadata}, QStringLiteral("linestitle")).isEmpty());
}

void TranscriptSearchTest::whatChangedIsSearchedAnew()
{
    TranscriptSearch search(QLocale::c());
    QCOMPARE(search.filtered({record(1, QStringLiteral("old"))}, QStringLiteral("old")).size(), 1);
    search.forget(countedUuid(1));
    QCOMPARE(search.filtered({record(1, QStringLiteral("new"))}, QStringLiteral("new")).size(), 1);
    search.forgetAll();
    QCOMPARE(search.filtered({record(1, QStringLiteral("newer"))}, QStringLiteral("newer")).size(), 1);
}

LUMAPHONE_TEST(TranscriptSearchTest)

} // namespace transcriptsearchtest

#include "TranscriptSearchTest.moc"
