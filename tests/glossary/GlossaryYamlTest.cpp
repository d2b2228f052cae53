#include "glossary/GlossaryYaml.h"

#include "base/Text.h"
#include "support/CountedUuids.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>

namespace glossaryyamltest {

using namespace lumaphone;

class GlossaryYamlTest : public QObject
{
    Q_OBJECT

private slots:
    void splitsALine_data();
    void splitsALine();
    void makesATerm_data();
    void makesATerm();
    void readsItems_data();
    void readsItems();
    void everyTermHasAFreshIdentity();
    void writesTheList();
    void writesAnEmptyList();
    void whatIsWrittenReadsBack_data();
    void whatIsWrittenReadsBack();
    void termsOfAnyCharactersReadBack();
    void aLineFeedEndsAValue();
    void aTermWithoutSourceDoesNotReadBack();
};

void GlossaryYamlTest::splitsALine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::newRow("plain") << "source: a"
                           << "source"
                           << "a";
    QTest::newRow("no blank") << "source:a"
                              << "source"
                              << "a";
    QTest::newRow("blanks around") << "\t source \t:\t a b \t"
                                   << "source"
                                   << "a b";
    QTest::newRow("the first colon splits") << "source: a: b"
                                            << "source"
                                            << "a: b";
    QTest::newRow("an empty value") << "target:"
                                    << "target"
                                    << "";
    QTest::newRow("an empty key") << ": a"
                                  << ""
                                  << "a";
    QTest::newRow("quoted") << "source: \"a b\""
                            << "source"
                            << "a b";
    QTest::newRow("blanks in quotes stay") << "source: \" a \""
                                           << "source"
                                           << " a ";
    QTest::newRow("empty quotes") << "target: \"\""
                                  << "target"
                                  << "";
    QTest::newRow("one quote") << "target: \""
                               << "target"
                               << "\"";
    QTest::newRow("a quote at the beginning only") << "target: \"a"
                                                   << "target"
                                                   << "\"a";
    QTest::newRow("a quote at the end only") << "target: a\""
                                             << "target"
                                             << "a\"";
    QTest::newRow("an escaped quote") << "target: \"a \\\"b\\\"\""
                                      << "target"
                                      << "a \"b\"";
    QTest::newRow("an escaped quote outside of quotes") << "target: a\\\"b"
                                                        << "target"
                                                        << "a\\\"b";
    QTest::newRow("an inner quote") << "target: \"a\"b\""
                                    << "target"
                                    << "a\"b";
    QTest::newRow("a backslash before an escaped quote") << "target: \"\\\\\"\""
                                                         << "target"
                                                         << "\\\"";
    QTest::newRow("a backslash at the end") << "target: \"a\\\""
                                            << "target"
                                            << "a\\";
    QTest::newRow("other escapes are not understood") << "target: \"a\\n\\t\\\\\""
                                                      << "target"
                                                      << "a\\n\\t\\\\";
    QTest::newRow("single quotes are not special") << "target: 'a'"
                                                   << "target"
                                                   << "'a'";
    QTest::newRow("a comment is part of the value") << "target: a # b"
                                                    << "target"
                                                    << "a # b";
    QTest::newRow("a comment after quotes") << "target: \"a\" # b"
                                            << "target"
                                            << "\"a\" # b";
    QTest::newRow("ideographic space is no blank") << "target:\u3000a"
                                                   << "target"
                                                   << "\u3000a";
    QTest::newRow("full-width colon is no colon") << "a：b:c"
                                                  << "a：b"
                                                  << "c";
}

void GlossaryYamlTest::splitsALine()
{
    QFETCH(QString, line);
    const auto pair = parseYAMLKeyValue(line);
    QVERIFY(pair);
    QTEST(pair->first, "key");
    QTEST(pair->second, "value");
    QVERIFY(!parseYAMLKeyValue(QString(line).remove(QLatin1Char(':'))));
}

void GlossaryYamlTest::makesATerm_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QStringList>("term");
    const auto row = [](const char *name, const char *item, const char *term) {
        QTest::newRow(name) << item << (term ? test::strings({term}) : QStringList());
    };
    row("source and target", "source=a,target=b", "a|b|translate||true|false");
    row("no target", "source=a", nullptr);
    row("no source", "target=b", nullptr);
    row("an empty source", "source=,target=b", nullptr);
    row("a blank source", "source= ,target=b", " |b|translate||true|false");
    row("an empty target", "source=a,target=", "a||translate||true|false");
    row("nothing", "", nullptr);
    row("equal texts", "source=a,target=a", "a|a|preserve||true|false");
    row("canonically equal texts", "source=é,target=e\u0301", "é|e\u0301|preserve||true|false");
    row("texts that differ in case", "source=a,target=A", "a|A|translate||true|false");
    row("mode preserve", "source=a,target=b,mode=preserve", "a|b|preserve||true|false");
    row("mode translate of equal texts", "source=a,target=a,mode=translate", "a|a|translate||true|false");
    row("an unknown mode", "source=a,target=b,mode=keep", "a|b|translate||true|false");
    row("a capital mode of equal texts", "source=a,target=a,mode=Translate", "a|a|preserve||true|false");
    row("an empty mode", "source=a,target=b,mode=", "a|b|translate||true|false");
    row("enabled true", "source=a,target=b,enabled=true", "a|b|translate||true|false");
    row("enabled false", "source=a,target=b,enabled=false", "a|b|translate||false|false");
    row("enabled is unknown", "source=a,target=b,enabled=no", "a|b|translate||true|false");
    row("enabled wins", "source=a,target=b,enabled=true,isEnabled=false", "a|b|translate||true|false");
    row("enabled false wins", "source=a,target=b,enabled=false,isEnabled=true", "a|b|translate||false|false");
    row("isEnabled false", "source=a,target=b,isEnabled=false", "a|b|translate||false|false");
    row("isEnabled is unknown", "source=a,target=b,isEnabled=no", "a|b|translate||true|false");
    row("isEnabled when enabled is unknown", "source=a,target=b,enabled=False,isEnabled=false",
        "a|b|translate||false|false");
    row("case-sensitive", "source=a,target=b,caseSensitive=true", "a|b|translate||true|true");
    row("a capital True", "source=a,target=b,caseSensitive=True", "a|b|translate||true|false");
    row("not case-sensitive", "source=a,target=b,caseSensitive=false", "a|b|translate||true|false");
    row("a note", "source=a,target=b,note=c", "a|b|translate|c|true|false");
    row("values are not trimmed", "source= a,target=b ,note= c", " a|b |translate| c|true|false");
}

void GlossaryYamlTest::makesATerm()
{
    QFETCH(QString, item);
    QFETCH(QStringList, term);
    QHash<QString, QString> values;
    for (const QString &pair : item.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        values.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    }
    const auto made = makeTerm(values, test::countedUuids());
    QCOMPARE(made ? QStringList {test::line(*made)} : QStringList(), term);
}

void GlossaryYamlTest::readsItems_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("terms");
    const char *const ab = "a|b|translate||true|false";
    const char *const cd = "c|d|translate||true|false";
    const auto row = [](const char *name, const char *text, const std::vector<const char *> &terms) {
        QTest::newRow(name) << text << test::strings(terms);
    };
    row("empty", "", {});
    row("one item", "terms:\n  - source: a\n    target: b", {ab});
    row("a line feed at the end", "terms:\n- source: a\n  target: b\n", {ab});
    row("two items", "- source: a\n  target: b\n- source: c\n  target: d", {ab, cd});
    row("keys in another order", "- target: b\n  mode: preserve\n  source: a", {"a|b|preserve||true|false"});
    row("all keys",
        "- source: a\n  target: b\n  mode: preserve\n  enabled: false\n  caseSensitive: true\n  note: n",
        {"a|b|preserve|n|false|true"});
    row("no target", "- source: a\n- source: c\n  target: d", {cd});
    row("comments and blank lines", "# a: b\n\n- source: a\n \t\n  # target: x\n  target: b", {ab});
    row("indentation means nothing", "-  source: a\ntarget: b\n\t\t\t- source: c\n target: d", {ab, cd});
    row("lines before the first item make one", "source: a\ntarget: b\n- source: c\ntarget: d", {ab, cd});
    row("a later key overwrites", "- source: x\n  source: a\n  target: b", {ab});
    row("unknown keys", "- color: red\n  source: a\n  target: b\n  Source: x", {ab});
    row("an item without keys", "- nothing\n- source: a\n  target: b", {ab});
    row("a first line without a pair", "- nothing\n  source: a\n  target: b", {ab});
    row("an item of unknown keys", "- color: red\n- source: a\n  target: b", {ab});
    row("a dash alone begins nothing", "- source: a\n  target: b\n-\n  source: c\n  target: d", {cd});
    row("a dash and a tab begin nothing", "- source: a\n  target: b\n-\tsource: c", {ab});
    row("a second dash is part of the key", "- - source: a\n  target: b", {});
    row("terms: amid items", "- source: a\nterms:\n  target: b", {ab});
    row("terms with a value", "terms: []\n- source: a\n  target: b", {ab});
    row("terms among blanks", "\t terms: \n- source: a\n  target: b", {ab});
    row("lines without a colon", "- source: a\nhello\n  target: b", {ab});
    row("carriage returns", "terms:\r\n- source: a\r\n  target: b\r\n", {ab});
    row("carriage returns after quotes", "- source: \"a\"\r\n  target: \"b\"\r\n  enabled: false\r\n",
        {"a|b|translate||false|false"});
    row("doubled carriage returns", "- source: a\r\r\n  target: b\r\r\n", {ab});
    row("a carriage return alone is no line break", "- source: a\rb\n  target: b",
        {"a\rb|b|translate||true|false"});
    row("other line breaks are none", "- source: a\u2028c\u0085\n  target: b",
        {"a\u2028c\u0085|b|translate||true|false"});
    row("a second list", "terms:\n- source: a\n  target: b\nterms:\n- source: c\n  target: d", {ab, cd});
}

void GlossaryYamlTest::readsItems()
{
    QFETCH(QString, text);
    QFETCH(QStringList, terms);
    QCOMPARE(test::lines(decodeYAML(text, test::countedUuids())), terms);
}

void GlossaryYamlTest::everyTermHasAFreshIdentity()
{
    const auto terms = decodeYAML(
        u"- source: a\n- source: a\n  target: b\n- source: a\n  target: b", test::countedUuids());
    QCOMPARE(terms.size(), 2);
    QCOMPARE(terms[0].id, test::countedUuid(1));
    QCOMPARE(terms[1].id, test::countedUuid(2));
}

void GlossaryYamlTest::writesTheList()
{
    LumaphoneGlossaryTerm quoted = test::caseSensitive(test::preserved(QStringLiteral("say \"a\\b\"")));
    quoted.note = QStringLiteral("not written");
    const QList<LumaphoneGlossaryTerm> terms {
        quoted,
        test::disabled(test::translated(QStringLiteral("東京"), QStringLiteral("Tokyo: a city # big"))),
    };
    QCOMPARE(encodeYAML(terms),
        QStringLiteral("terms:\n"
                       "  - source: \"say \\\"a\\b\\\"\"\n"
                       "    target: \"\"\n"
                       "    mode: preserve\n"
                       "    enabled: true\n"
                       "    caseSensitive: true\n"
                       "  - source: \"東京\"\n"
                       "    target: \"Tokyo: a city # big\"\n"
                       "    mode: translate\n"
                       "    enabled: false\n"
                       "    caseSensitive: false"));
}

void GlossaryYamlTest::writesAnEmptyList()
{
    QCOMPARE(encodeYAML({}), QStringLiteral("terms:\n"));
    QVERIFY(decodeYAML(encodeYAML({}), test::countedUuids()).isEmpty());
}

void GlossaryYamlTest::whatIsWrittenReadsBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a word") << "Lumaphone";
    QTest::newRow("quotes") << "\"a\"";
    QTest::newRow("a quote alone") << "\"";
    QTest::newRow("a backslash alone") << "\\";
    QTest::newRow("a backslash at the end") << "C:\\";
    QTest::newRow("a backslash before a quote") << "a\\\"b\\\\\"";
    QTest::newRow("ends in backslash and quote") << "a\\\"";
    QTest::newRow("colons") << "a: b:";
    QTest::newRow("a comment") << "# a";
    QTest::newRow("looks like an item") << "- source: x";
    QTest::newRow("looks like the root") << "terms:";
    QTest::newRow("blanks at the ends") << " \t a \t ";
    QTest::newRow("a carriage return") << "a\rb\r";
    QTest::newRow("line separator") << "a\u2028b\u0085\v\f";
    QTest::newRow("begins with a combining mark") << "\u0301a";
    QTest::newRow("ends with a joiner") << "a\u200d";
    QTest::newRow("byte-order mark") << QString(QChar::ByteOrderMark);
    QTest::newRow("emoji") << "👩‍💻";
}

void GlossaryYamlTest::whatIsWrittenReadsBack()
{
    QFETCH(QString, text);
    const QList<LumaphoneGlossaryTerm> terms {
        test::preserved(text), test::translated(QStringLiteral("x"), text), test::preserved(text, text)};
    QCOMPARE(test::lines(decodeYAML(encodeYAML(terms), test::countedUuids())), test::lines(terms));
}

void GlossaryYamlTest::termsOfAnyCharactersReadBack()
{
    const QList<uint> alphabet
        = QString::fromUtf16(u"ab\"\\':#- \t\r\u2028\u0301\u3000\ufeffé東😀𠮷,[]{}|>&*!%@`").toUcs4();
    QRandomGenerator random(20240229);
    const auto randomText = [&](int shortest) {
        QString text;
        for (int left = shortest + random.bounded(8); left > 0; --left) {
            text.append(QStringView(QChar::fromUcs4(alphabet[random.bounded(alphabet.size())])));
        }
        return text;
    };
    for (int round = 0; round < 500; ++round) {
        QList<LumaphoneGlossaryTerm> terms;
        for (int left = random.bounded(12); left > 0; --left) {
            terms.append({.id = QUuid(),
                .source = randomText(1),
                .target = randomText(0),
                .mode = allLumaphoneGlossaryTermModes[static_cast<std::size_t>(random.bounded(2))],
                .note = QString(),
                .isEnabled = random.bounded(2) == 0,
                .caseSensitive = random.bounded(2) == 0});
        }
        QCOMPARE(test::lines(decodeYAML(encodeYAML(terms), test::countedUuids())), test::lines(terms));
    }
}

void GlossaryYamlTest::aLineFeedEndsAValue()
{
    const auto terms = decodeYAML(
        encodeYAML({test::translated(QStringLiteral("a\nb"), QStringLiteral("c"))}), test::countedUuids());
    QCOMPARE(test::lines(terms), test::strings({"\"a|c|translate||true|false"}));
}

void GlossaryYamlTest::aTermWithoutSourceDoesNotReadBack()
{
    const auto terms
        = decodeYAML(encodeYAML({test::translated(QString(), QStringLiteral("c"))}), test::countedUuids());
    QVERIFY(terms.isEmpty());
}

LUMAPHONE_TEST(GlossaryYamlTest)

} // namespace glossaryyamltest

#include "GlossaryYamlTest.moc"
