#include "base/Json.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace jsonboundstest {

using namespace lumaphone;

class JsonBoundsTest : public QObject
{
    Q_OBJECT

private slots:
    void nestingIsBounded_data();
    void nestingIsBounded();
    void bracketsInTextsDoNotCount();
    void errorsAreShort();
    void stringsKeepAByteOrderMark();
};

void JsonBoundsTest::nestingIsBounded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("accepted");
    const auto arrays = [](int depth) {
        return QByteArray(depth, '[') + QByteArray(depth, ']');
    };
    const auto objects = [](int depth) {
        return QByteArray("{\"a\":").repeated(depth) + '1' + QByteArray(depth, '}');
    };
    QTest::newRow("512 arrays") << arrays(512) << true;
    QTest::newRow("513 arrays") << arrays(513) << false;
    QTest::newRow("512 objects") << objects(512) << true;
    QTest::newRow("513 objects") << objects(513) << false;
    QTest::newRow("side by side") << '[' + QByteArray("[[]],").repeated(1000) + "1]" << true;
    QTest::newRow("a million, never closed") << QByteArray(1000000, '[') << false;
}

void JsonBoundsTest::nestingIsBounded()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, accepted);
    const auto error = test::thrownBy<json::DecodingError>([&] { json::parse(bytes); });
    QCOMPARE(!error, accepted);
    QVERIFY(accepted || error->errorDescription().contains(QStringLiteral("512")));
}

void JsonBoundsTest::bracketsInTextsDoNotCount()
{
    const QByteArray brackets = QByteArray("[{").repeated(1000);
    const json::Value value = json::parse("{\"a\": \"" + brackets + "\\\"" + brackets + "\\\\\"}");
    QCOMPARE(json::text(value, "a"), QString::fromLatin1(brackets + '"' + brackets + '\\'));
}

void JsonBoundsTest::errorsAreShort()
{
    const QByteArray unclosed = '"' + QByteArray(1000000, 'x');
    const auto error = test::thrownBy<json::DecodingError>([&] { json::parse(unclosed); });
    QVERIFY(error);
    QVERIFY(error->errorDescription().size() < 400);
}

void JsonBoundsTest::stringsKeepAByteOrderMark()
{
    const json::Value value = json::parse("{\"a\": \"\xEF\xBB\xBF!\"}");
    QCOMPARE(json::text(value, "a"), QString(QChar::ByteOrderMark) + QLatin1Char('!'));
}

LUMAPHONE_TEST(JsonBoundsTest)

} // namespace jsonboundstest

#include "JsonBoundsTest.moc"
