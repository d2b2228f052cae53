#include "base/Json.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>
#include <QTimeZone>

namespace jsontest {

using namespace lumaphone;
using lumaphone::test::thrownBy;

class JsonTest : public QObject
{
    Q_OBJECT

private slots:
    void listsOfTextsAreRead()
    {
        const json::Value object = json::parse(R"({"a": ["x", "\ufeffy", ""], "b": [], "c": [1], "d": "x"})");
        QCOMPARE(json::texts(object, "a"), (QStringList {"x", QStringLiteral("\ufeffy"), ""}));
        QCOMPARE(json::texts(object, "b"), QStringList());
        for (const char *key : {"c", "d", "e"}) {
            const auto error = test::thrownBy<json::DecodingError>([&] { json::texts(object, key); });
            QVERIFY(error);
            QVERIFY(error->errorDescription().contains(QString::fromLatin1(key)));
        }
    }

    void aMessageQuotesTheBeginningOfALongText()
    {
        QCOMPARE(json::excerpt(QStringLiteral("short")), QStringLiteral("short"));
        QCOMPARE(json::excerpt(QString(60, QLatin1Char('x'))).size(), 60);
        QCOMPARE(json::excerpt(QString(61, QLatin1Char('x'))),
            QString(60, QLatin1Char('x')) + QStringLiteral("…"));
    }

    void prettyTextHasSortedKeysAndTwoBlanks()
    {
        const json::Value value {{"b", {1, true, nullptr}}, {"a", "台\"\n"}, {"c", json::Value::object()}};
        QCOMPARE(json::pretty(value),
            QByteArray(
                "{\n  \"a\": \"台\\\"\\n\",\n  \"b\": [\n    1,\n    true,\n    null\n  ],\n  \"c\": {}\n}"));
    }

    void compactTextKeepsTheOrderWhereItIsAskedTo()
    {
        QCOMPARE(json::compact(json::OrderedValue {{"b", 1}, {"a", 2}}), QByteArray("{\"b\":1,\"a\":2}"));
        QCOMPARE(json::compact(json::Value {{"b", 1}, {"a", 2}}), QByteArray("{\"a\":2,\"b\":1}"));
    }

    void doublesHaveTheirShortestForm() { QCOMPARE(json::compact(json::Value(0.2)), QByteArray("0.2")); }

    void unpairedSurrogatesBecomeReplacementCharacters()
    {
        const QString lone = QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b");
        QCOMPARE(json::compact(json::Value(json::fromText(lone))),
            QByteArray("\"a\xEF\xBF\xBD"
                       "b\""));
    }

    void malformedTextIsRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        for (const char *bytes :
            {"", "{", "{\"a\":}", "{a:1}", "[1,]", "{} x", "// c\n{}", "\"\xff\"", "NaN", "01"}) {
            QTest::newRow(bytes) << QByteArray(bytes);
        }
    }
    void malformedTextIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(thrownBy<json::DecodingError>([&] { json::parse(bytes); }));
    }

    void membersAreReadByKind()
    {
        const json::Value object = json::parse(R"({"t":"今日","b":true,"i":-9223372036854775808,"n":0.5,"w":3,
            "u":"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9","d":"2026-01-31T08:05:09Z","x":null})");
        QCOMPARE(json::text(object, "t"), QStringLiteral("今日"));
        QCOMPARE(json::boolean(object, "b"), true);
        QCOMPARE(json::integer(object, "i"), std::numeric_limits<std::int64_t>::min());
        QCOMPARE(json::number(object, "n"), 0.5);
        QCOMPARE(json::number(object, "w"), 3.0);
        QCOMPARE(json::uuid(object, "u"),
            QUuid::fromString(QStringLiteral("0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9")));
        QCOMPARE(json::date(object, "d"), QDateTime(QDate(2026, 1, 31), QTime(8, 5, 9), QTimeZone::utc()));
        QVERIFY(json::has(object, "t"));
        QVERIFY(!json::has(object, "x"));
        QVERIFY(!json::has(object, "y"));
        QVERIFY(!json::has(json::Value::array(), "t"));
    }

    void anErrorNamesTheKey()
    {
        const json::Value object = json::parse(R"({"key":[]})");
        const auto read = [&object](auto reader, const char *key) {
            return thrownBy<json::DecodingError>([&] { reader(object, key); });
        };
        const auto namesKey = [](const auto &error, const char *key) {
            return error && error->errorDescription().contains(QLatin1String(key));
        };
        for (const char *key : {"key", "missing"}) {
            QVERIFY(namesKey(read(json::text, key), key));
            QVERIFY(namesKey(read(json::boolean, key), key));
            QVERIFY(namesKey(read(json::integer, key), key));
            QVERIFY(namesKey(read(json::number, key), key));
            QVERIFY(namesKey(read(json::uuid, key), key));
            QVERIFY(namesKey(read(json::date, key), key));
        }
        QVERIFY(thrownBy<json::DecodingError>([] { json::member(json::Value(1), "key"); }));
    }

    void integersOutOfRangeAreRefused()
    {
        for (const char *text : {"9223372036854775808", "1.0", "1e3", "\"1\"", "true"}) {
            const json::Value object = json::parse("{\"key\":" + QByteArray(text) + "}");
            QVERIFY2(thrownBy<json::DecodingError>([&] { json::integer(object, "key"); }), text);
        }
    }
};

LUMAPHONE_TEST(JsonTest)

} // namespace jsontest

#include "JsonTest.moc"
