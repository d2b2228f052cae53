#include "translation/engine/ProtectedTerms.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace protectedtermstest {

using namespace lumaphone::engine;

namespace {

/// A translation of the given words, the n-th of which looked at source token looks[n] alone.
struct Translation
{
    QStringList words;
    std::vector<int> looks;

    SpelledTranslation spelled() const
    {
        SpelledTranslation spelled;
        for (const QString &word : words) {
            spelled.text += word;
            spelled.ends.push_back(spelled.text.size());
        }
        return spelled;
    }

    std::vector<float> alignment(int sourceTokens) const
    {
        std::vector<float> alignment(words.size() * std::size_t(sourceTokens), 0.0F);
        for (std::size_t word = 0; word < looks.size(); ++word)
            alignment[word * std::size_t(sourceTokens) + std::size_t(looks[word])] = 1.0F;
        return alignment;
    }
};

} // namespace

class ProtectedTermsTest : public QObject
{
    Q_OBJECT

private slots:
    void termsAreFound_data()
    {
        QTest::addColumn<QString>("sentence");
        QTest::addColumn<QStringList>("terms");
        const auto row = [](const char *title, const QString &sentence, const QStringList &terms) {
            QTest::newRow(title) << sentence << terms;
        };
        row("none", QStringLiteral("Nothing special, 3 times."), {});
        row("a placeholder", QStringLiteral("Ask LUMAPHON_TERM_0."), {QStringLiteral("LUMAPHON_TERM_0")});
        row("between kana", QStringLiteral("これはLUMAPHON_TERM_12です"),
            {QStringLiteral("LUMAPHON_TERM_12")});
        row("the same twice", QStringLiteral("LUMAPHON_TERM_0と LUMAPHON_TERM_0"),
            {QStringLiteral("LUMAPHON_TERM_0"), QStringLiteral("LUMAPHON_TERM_0")});
        row("addresses", QStringLiteral("See https://example.org/a_b?c=1, or www.example.org."),
            {QStringLiteral("https://example.org/a_b?c=1"), QStringLiteral("www.example.org")});
        row("an address before kanji", QStringLiteral("https://example.org/へ"),
            {QStringLiteral("https://example.org/")});
        row("mail", QStringLiteral("Write to someone@example.org!"), {QStringLiteral("someone@example.org")});
    }

    void termsAreFound()
    {
        QFETCH(QString, sentence);
        QFETCH(QStringList, terms);
        QStringList found;
        for (const ProtectedTerm &term : findProtectedTerms(sentence)) {
            found.append(term.text);
            QCOMPARE(sentence.mid(term.begin, term.text.size()), term.text);
        }
        QCOMPARE(found, terms);
    }

    // The source is always "Ask TERM_0 today": tokens Ask, TERM, _, 0, today, end.
    void termsAreRestored_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QList<int>>("looks");
        QTest::addColumn<QString>("restored");
        const auto row = [](const char *title, const QStringList &words, const QList<int> &looks,
                             const QString &restored) {
            QTest::newRow(title) << words << looks << restored;
        };
        row("a faithful copy", {"今天", "問", "TERM", "_", "0"}, {4, 0, 1, 2, 3},
            QStringLiteral("今天問TERM_0"));
        row("spaces within", {"今天", "問", " TERM", " _", " 0"}, {4, 0, 1, 2, 3},
            QStringLiteral("今天問 TERM_0"));
        row("another case", {"問", "Term", "_", "0", "今天"}, {0, 1, 2, 3, 4},
            QStringLiteral("問TERM_0今天"));
        row("wide letters stay out", {"今天", "問", "他"}, {4, 0, 2},
            QStringLiteral("今天問他 TERM_0").remove(QLatin1Char(' ')));
        row("dropped", {"今天", "問"}, {4, 0}, QStringLiteral("今天TERM_0問"));
        row("dropped among Latin words", {"ask", " now"}, {1, 4}, QStringLiteral("ask TERM_0 now"));
        row("a scrap", {"今天", "問", "TER", "M", "_", "喔"}, {4, 0, 1, 1, 2, 0},
            QStringLiteral("今天問TERM_0喔"));
        row("nothing at all", {}, {}, QStringLiteral("TERM_0"));
        row("a longer number is another term", {"問", "TERM", "_", "01"}, {0, 1, 2, 4},
            QStringLiteral("問TERM_001"));
    }

    void termsAreRestored()
    {
        QFETCH(QStringList, words);
        QFETCH(QList<int>, looks);
        QFETCH(QString, restored);
        const Translation translation = {words, std::vector<int>(looks.begin(), looks.end())};
        const std::vector<TokenRange> tokens = {{1, 4}};
        QCOMPARE(restoreTerms(translation.spelled(), {{QStringLiteral("TERM_0"), 4}}, tokens,
                     translation.alignment(6), 6),
            restored);
    }

    void severalTermsKeepApart()
    {
        // Source tokens: TERM_1, and, TERM_10, end.
        const QList<ProtectedTerm> terms = {{QStringLiteral("TERM_1"), 0}, {QStringLiteral("TERM_10"), 11}};
        const std::vector<TokenRange> tokens = {{0, 1}, {2, 3}};
        const Translation copied = {{"TERM_10", "和", "TERM_1"}, {2, 1, 0}};
        QCOMPARE(restoreTerms(copied.spelled(), terms, tokens, copied.alignment(4), 4),
            QStringLiteral("TERM_10和TERM_1"));
        const Translation lost = {{"甲", "和", "乙"}, {0, 1, 2}};
        QCOMPARE(restoreTerms(lost.spelled(), terms, tokens, lost.alignment(4), 4),
            QStringLiteral("甲TERM_1和乙TERM_10"));
        const Translation sameplace = {{"甲"}, {1}};
        const QString both = restoreTerms(sameplace.spelled(), terms, tokens, sameplace.alignment(4), 4);
        QVERIFY2(both.contains(QStringLiteral("TERM_10")) && both.count(QStringLiteral("TERM_1")) == 2,
            qPrintable(both));
    }

    void repetitionsAreCounted()
    {
        const QList<ProtectedTerm> terms = {{QStringLiteral("TERM_0"), 0}, {QStringLiteral("TERM_0"), 7}};
        const std::vector<TokenRange> tokens = {{0, 1}, {1, 2}};
        const Translation once = {{"TERM_0", "在"}, {0, 1}};
        QCOMPARE(
            restoreTerms(once.spelled(), terms, tokens, once.alignment(3), 3).count(QStringLiteral("TERM_0")),
            2);
    }
};

LUMAPHONE_TEST(ProtectedTermsTest)

} // namespace protectedtermstest

#include "ProtectedTermsTest.moc"
