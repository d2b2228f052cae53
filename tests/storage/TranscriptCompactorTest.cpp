#include "storage/TranscriptCompactor.h"

#include "support/CountedUuids.h"
#include "support/program/TestProgram.h"

#include <QTest>
#include <QTimeZone>

namespace transcriptcompactortest {

using namespace lumaphone;
using namespace lumaphone::test;
using enum AppleSystemSpeechLanguage;

namespace {

const QDateTime begin = QDateTime(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc());

SavedTranscriptLine line(const QString &source, AppleSystemSpeechLanguage language, int seconds = 0,
    const QString &translation = {}, bool isFinal = false)
{
    static uint number = 0;
    return {countedUuid(++number), source, translation, language, begin.addSecs(seconds), isFinal};
}

TranscriptCompactor neverRevised()
{
    return TranscriptCompactor([](const QString &, const QString &) { return false; });
}

/// Whether two lines that are no revision of each other become one.
bool merge(const SavedTranscriptLine &previous, const SavedTranscriptLine &incoming)
{
    return neverRevised().compactSavedLines({previous, incoming}).size() == 1;
}

QStringList sources(const QList<SavedTranscriptLine> &lines)
{
    QStringList texts;
    for (const SavedTranscriptLine &one : lines) {
        texts.append(one.sourceText);
    }
    return texts;
}

} // namespace

class TranscriptCompactorTest : public QObject
{
    Q_OBJECT

private slots:
    void adjacentLinesMergeByTheRules_data();
    void adjacentLinesMergeByTheRules();
    void differentLanguagesStayApart();
    void longPausesKeepLinesApart_data();
    void longPausesKeepLinesApart();
    void aRevisionMergesWhateverTheRulesSay();
    void theQuestionIsPutOncePerPairInOrder();
    void aMergedLineKeepsTheFirstIdentityAndTheNewestText();
    void theTranslationOfAMergedLine_data();
    void theTranslationOfAMergedLine();
    void aPendingTranslationIsNotSaved_data();
    void aPendingTranslationIsNotSaved();
    void textsAreTrimmedAndBlankLinesDropped();
    void mergesGoOnFromTheMergedLine();
};

void TranscriptCompactorTest::adjacentLinesMergeByTheRules_data()
{
    QTest::addColumn<AppleSystemSpeechLanguage>("language");
    QTest::addColumn<QString>("previous");
    QTest::addColumn<QString>("incoming");
    QTest::addColumn<bool>("merges");
    const auto row = [](const char *name, AppleSystemSpeechLanguage language, const char *previous,
                         const char *incoming, bool merges) {
        QTest::newRow(name) << language << QString::fromUtf8(previous) << QString::fromUtf8(incoming)
                            << merges;
    };
    row("mandarin: two characters grow to four", mandarin, "今天", "今天天氣", true);
    row("english: contained", english, "good morning", "Good  Morning everyone", true);
    row("english: contained in the middle", english, "morning", "Good morning everyone", true);
    row("english: identical", english, "Hello there", "hello THERE", true);
    row("english: a shorter text", english, "Hello there", "Hello", false);
    row("english: common beginning only", english, "Hello there", "Hello them all", false);
    row("english: unrelated", english, "Hello there", "What a day it is", false);
    row("automatic: common beginning only", automatic, "今日は雨", "今日は雪が降る", false);
    row("composed and decomposed are the same", english, "caf\u00e9", "cafe\u0301 au lait", true);
    row("a base letter does not contain its accented self", english, "cafe", "cafe\u0301", false);

    row("p = 3, k = 3, contained", japanese, "あいう", "あいうえ", true);
    row("p = 3, k = 2, n = 4: too few more", japanese, "あいう", "あいかき", false);
    row("p = 3, k = 2, n = 5: two more", japanese, "あいう", "あいかきく", true);
    row("p = 3, k = 0, n = 5: two more of anything", korean, "가나다", "라마바사아", true);
    row("p = 3, k = 0, n = 4", korean, "가나다", "라마바사", false);
    row("p = 4, k = 4 but for case", mandarin, "abcd", "ABCDe", true);
    row("p = 5, k = 4, n = 5", japanese, "あいうえお", "あいうえか", true);
    row("p = 5, k = 3, n = 5", japanese, "あいうえお", "あいうかき", false);
    row("p = 5, k = 3, n = 7: two more", japanese, "あいうえお", "あいうかきくけ", true);
    row("p = 8, k = 0, n = 10: two more", japanese, "あいうえおかきく", "さしすせそたちつてと", true);
    row("p = 8, k = 0, n = 9", japanese, "あいうえおかきく", "さしすせそたちつて", false);
    row("p = 9, k = 0, n = 12: too long", japanese, "あいうえおかきくけ", "さしすせそたちつてとなに", false);
    row("p = 14, k = 4, n = 14", japanese, "あいうえおかきくけこさしすせ", "あいうえなにぬねのはひふへほ",
        true);
    row("p = 14, k = 3, n = 20", japanese, "あいうえおかきくけこさしすせ",
        "あいうなにぬねのはひふへほまみむめもやゆよ", false);
    row("p = 15, k = 14, n = 15", japanese, "あいうえおかきくけこさしすせそ",
        "あいうえおかきくけこさしすせた", false);
    row("p = 15, contained", japanese, "あいうえおかきくけこさしすせそ", "あいうえおかきくけこさしすせそた",
        true);
    row("n below p", japanese, "あいうえお", "あいうえ", false);
    row("white space does not count", korean, "가 나 다", "가나다 라", true);
}

void TranscriptCompactorTest::adjacentLinesMergeByTheRules()
{
    QFETCH(const AppleSystemSpeechLanguage, language);
    QFETCH(const QString, previous);
    QFETCH(const QString, incoming);
    QFETCH(const bool, merges);
    QCOMPARE(merge(line(previous, language), line(incoming, language, 2)), merges);
}

void TranscriptCompactorTest::differentLanguagesStayApart()
{
    QVERIFY(!merge(line(QStringLiteral("今天"), mandarin), line(QStringLiteral("今天天"), japanese)));
}

void TranscriptCompactorTest::longPausesKeepLinesApart_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<bool>("merges");
    QTest::newRow("none") << 0 << true;
    QTest::newRow("just 8 s") << 8000 << true;
    QTest::newRow("over 8 s") << 8001 << false;
    QTest::newRow("9 s") << 9000 << false;
    QTest::newRow("8 s back") << -8000 << true;
    QTest::newRow("9 s back") << -9000 << false;
}

void TranscriptCompactorTest::longPausesKeepLinesApart()
{
    QFETCH(const int, milliseconds);
    QFETCH(const bool, merges);
    const SavedTranscriptLine first = line(QStringLiteral("今天"), mandarin);
    SavedTranscriptLine second = line(QStringLiteral("今天天氣"), mandarin);
    second.createdAt = first.createdAt.addMSecs(milliseconds);
    QCOMPARE(merge(first, second), merges);
}

void TranscriptCompactorTest::aRevisionMergesWhateverTheRulesSay()
{
    const TranscriptCompactor always([](const QString &, const QString &) { return true; });
    const auto lines = always.compactSavedLines(
        {line(QStringLiteral("one"), english), line(QStringLiteral("zwei"), japanese, 100)});
    QCOMPARE(sources(lines), QStringList {QStringLiteral("zwei")});
    QCOMPARE(lines.first().sourceLanguage, japanese);
}

void TranscriptCompactorTest::theQuestionIsPutOncePerPairInOrder()
{
    QStringList questions;
    const TranscriptCompactor compactor([&questions](const QString &current, const QString &incoming) {
        questions.append(current + QStringLiteral(" / ") + incoming);
        return incoming == QLatin1String("b");
    });
    compactor.compactSavedLines({line(QStringLiteral(" a "), english), line(QStringLiteral("b"), english),
        line(QStringLiteral("  "), english), line(QStringLiteral("c"), english)});
    QCOMPARE(questions, (QStringList {QStringLiteral("a / b"), QStringLiteral("b / c")}));
}

void TranscriptCompactorTest::aMergedLineKeepsTheFirstIdentityAndTheNewestText()
{
    const SavedTranscriptLine first = line(QStringLiteral("今天"), mandarin, 0, QStringLiteral("舊"), true);
    const SavedTranscriptLine second = line(QStringLiteral("今天天氣"), mandarin, 2, QStringLiteral("新"));
    const auto lines = neverRevised().compactSavedLines({first, second});
    QCOMPARE(lines.size(), 1);
    const SavedTranscriptLine wanted {
        first.id, QStringLiteral("今天天氣"), QStringLiteral("新"), mandarin, first.createdAt, true};
    QVERIFY(lines.first() == wanted);
}

void TranscriptCompactorTest::theTranslationOfAMergedLine_data()
{
    QTest::addColumn<QString>("incoming");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("its own") << QStringLiteral("Good morning") << QStringLiteral("早安")
                             << QStringLiteral("早安");
    QTest::newRow("none, same text") << QStringLiteral("Good day") << QString() << QStringLiteral("日安");
    QTest::newRow("none, same text but for case") << QStringLiteral("good day") << QString() << QString();
    QTest::newRow("none, longer text") << QStringLiteral("Good day to you") << QString() << QString();
    QTest::newRow("pending, same text")
        << QStringLiteral("Good day") << QStringLiteral("翻譯中...") << QStringLiteral("日安");
}

void TranscriptCompactorTest::theTranslationOfAMergedLine()
{
    QFETCH(const QString, incoming);
    QFETCH(const QString, translation);
    QFETCH(const QString, wanted);
    const TranscriptCompactor always([](const QString &, const QString &) { return true; });
    const auto lines
        = always.compactSavedLines({line(QStringLiteral("Good day"), english, 0, QStringLiteral("日安")),
            line(incoming, english, 1, translation)});
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().translatedText, wanted);
}

void TranscriptCompactorTest::aPendingTranslationIsNotSaved_data()
{
    QTest::addColumn<AppleSystemSpeechLanguage>("language");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("english") << english << QStringLiteral("翻譯中...") << QString();
    QTest::newRow("mandarin") << mandarin << QStringLiteral("翻譯中...") << QStringLiteral("原文");
    QTest::newRow("with blanks") << english << QStringLiteral("  翻譯中...\n") << QString();
    QTest::newRow("another text") << english << QStringLiteral("翻譯中…") << QStringLiteral("翻譯中…");
    QTest::newRow("none, mandarin") << mandarin << QString() << QString();
}

void TranscriptCompactorTest::aPendingTranslationIsNotSaved()
{
    QFETCH(const AppleSystemSpeechLanguage, language);
    QFETCH(const QString, translation);
    QFETCH(const QString, wanted);
    const auto lines
        = neverRevised().compactSavedLines({line(QStringLiteral(" 原文 "), language, 0, translation)});
    QCOMPARE(lines.first().translatedText, wanted);
}

void TranscriptCompactorTest::textsAreTrimmedAndBlankLinesDropped()
{
    const auto lines = neverRevised().compactSavedLines({line(QStringLiteral(" \n\u3000"), english),
        line(QStringLiteral("\t Hello \n"), english, 1, QStringLiteral(" 你好\u3000")),
        line(QString(), mandarin)});
    QCOMPARE(sources(lines), QStringList {QStringLiteral("Hello")});
    QCOMPARE(lines.first().translatedText, QStringLiteral("你好"));
    QVERIFY(neverRevised().compactSavedLines({}).isEmpty());
}

void TranscriptCompactorTest::mergesGoOnFromTheMergedLine()
{
    const auto lines = neverRevised().compactSavedLines({line(QStringLiteral("今天"), mandarin, 0),
        line(QStringLiteral("今天天氣"), mandarin, 4), line(QStringLiteral("今天天氣很好"), mandarin, 8),
        line(QStringLiteral("今天天氣很好啊"), mandarin, 12)});
    // The last one lies 12 s behind the time that the merged line has kept.
    QCOMPARE(
        sources(lines), (QStringList {QStringLiteral("今天天氣很好"), QStringLiteral("今天天氣很好啊")}));
}

LUMAPHONE_TEST(TranscriptCompactorTest)

} // namespace transcriptcompactortest

#include "TranscriptCompactorTest.moc"
