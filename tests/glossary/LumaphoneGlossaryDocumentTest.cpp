#include "glossary/LumaphoneGlossaryDocument.h"

#include "support/Coroutines.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace lumaphoneglossarydocumenttest {

using namespace lumaphone;

class LumaphoneGlossaryDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void writesSortedKeysAndIndentation();
    void writesAnEmptyList();
    void readsWhatItWrote();
    void readsIdentitiesInEitherCase();
    void ignoresOtherKeys();
    void refusesWhatIsNotStrictlyATerm_data();
    void refusesWhatIsNotStrictlyATerm();
    void namesTheTermThatFailed();
};

namespace {

const char *const wellFormed = R"({"id": "12345678-9ABC-4EF0-8234-56789ABCDEF0", "source": "a", "target": "b",
    "mode": "translate", "note": "n", "isEnabled": true, "caseSensitive": false})";

QList<LumaphoneGlossaryTerm> decoded(const QByteArray &document)
{
    return LumaphoneGlossaryDocument::decoded(json::parse(document)).terms;
}

QByteArray documentOf(const QByteArray &term)
{
    return "{\"terms\": [" + term + "]}";
}

} // namespace

void LumaphoneGlossaryDocumentTest::writesSortedKeysAndIndentation()
{
    LumaphoneGlossaryTerm term = test::translated(QStringLiteral("\"東京\" \\"), QStringLiteral("b\nc"));
    term.id = QUuid::fromString(QLatin1String("12345678-9abc-4ef0-8234-56789abcdef0"));
    term.note = QStringLiteral("é");
    const QByteArray expected = R"({
  "terms": [
    {
      "caseSensitive": false,
      "id": "12345678-9ABC-4EF0-8234-56789ABCDEF0",
      "isEnabled": true,
      "mode": "translate",
      "note": "é",
      "source": "\"東京\" \\",
      "target": "b\nc"
    }
  ]
})";
    QCOMPARE(LumaphoneGlossaryDocument {{term}}.encoded(), expected);
}

void LumaphoneGlossaryDocumentTest::writesAnEmptyList()
{
    QCOMPARE(LumaphoneGlossaryDocument {}.encoded(), QByteArray("{\n  \"terms\": []\n}"));
}

void LumaphoneGlossaryDocumentTest::readsWhatItWrote()
{
    const QList<LumaphoneGlossaryTerm> terms {
        test::preserved(QStringLiteral("b")),
        test::disabled(test::translated(QStringLiteral("a"), QStringLiteral("甲\u2028\t\"\\"))),
        test::caseSensitive(test::preserved(QString(), QStringLiteral("😀"))),
        test::preserved(QStringLiteral("\ufeffa"), QString(QChar::ByteOrderMark)),
    };
    QCOMPARE(decoded(LumaphoneGlossaryDocument {terms}.encoded()), terms);
}

void LumaphoneGlossaryDocumentTest::readsIdentitiesInEitherCase()
{
    const auto upper = decoded(documentOf(wellFormed));
    const auto lower = decoded(documentOf(QByteArray(wellFormed).replace("9ABC", "9abc")));
    QCOMPARE(upper.size(), 1);
    QCOMPARE(lower, upper);
    QCOMPARE(test::lines(upper), QStringList {QStringLiteral("a|b|translate|n|true|false")});
}

void LumaphoneGlossaryDocumentTest::ignoresOtherKeys()
{
    const QByteArray term = QByteArray(wellFormed).replace("{", "{\"color\": null, ");
    QCOMPARE(decoded("{\"version\": 2, \"terms\": [" + term + "]}"), decoded(documentOf(wellFormed)));
}

void LumaphoneGlossaryDocumentTest::refusesWhatIsNotStrictlyATerm_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("named");
    for (const char *key : {"id", "source", "target", "mode", "note", "isEnabled", "caseSensitive"}) {
        const QString name = QString::fromLatin1(key);
        const QByteArray quotedKey = '"' + QByteArray(key) + '"';
        QTest::addRow("%s is missing", key)
            << documentOf(QByteArray(wellFormed).replace(quotedKey, "\"other\"")) << name;
        QTest::addRow("%s is null", key)
            << documentOf(QByteArray(wellFormed).replace(quotedKey, quotedKey + ": null, \"other\"")) << name;
        QTest::addRow("%s is a number", key)
            << documentOf(QByteArray(wellFormed).replace(quotedKey, quotedKey + ": 1, \"other\"")) << name;
    }
    QTest::newRow("an unknown mode") << documentOf(QByteArray(wellFormed).replace("translate", "keep"))
                                     << "keep";
    QTest::newRow("a capital mode") << documentOf(QByteArray(wellFormed).replace("translate", "Translate"))
                                    << "Translate";
    QTest::newRow("no UUID") << documentOf(QByteArray(wellFormed).replace("12345678-", "")) << "id";
    QTest::newRow("a term that is no object") << documentOf("[]") << "1";
    QTest::newRow("no terms") << QByteArray("{}") << "terms";
    QTest::newRow("terms that are no array") << QByteArray("{\"terms\": {}}") << "陣列";
    QTest::newRow("a bare array") << '[' + QByteArray(wellFormed) + ']' << "terms";
}

void LumaphoneGlossaryDocumentTest::refusesWhatIsNotStrictlyATerm()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, named);
    const auto error = test::thrownBy<json::DecodingError>([&] { decoded(document); });
    QVERIFY(error);
    QVERIFY2(error->errorDescription().contains(named), error->what());
}

void LumaphoneGlossaryDocumentTest::namesTheTermThatFailed()
{
    const QByteArray document = documentOf(QByteArray(wellFormed) + ", {}");
    const auto error = test::thrownBy<json::DecodingError>([&] { decoded(document); });
    QVERIFY(error);
    QVERIFY2(error->errorDescription().startsWith(QStringLiteral("第 2 個術語")), error->what());
}

LUMAPHONE_TEST(LumaphoneGlossaryDocumentTest)

} // namespace lumaphoneglossarydocumenttest

#include "LumaphoneGlossaryDocumentTest.moc"
