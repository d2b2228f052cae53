#include "translation/ErrorBody.h"

#include "support/program/TestProgram.h"

#include <QObject>
#include <QTest>

namespace errorbodytest {

using namespace lumaphone;

class ErrorBodyTest : public QObject
{
    Q_OBJECT

private slots:
    void bytesBecomeTextOnlyWhenTheyAreUtf8_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("ASCII") << QByteArray("no\r\n") << QStringLiteral("no\r\n");
        QTest::newRow("Chinese") << QByteArray("錯誤😀") << QStringLiteral("錯誤😀");
        QTest::newRow("Latin-1") << QByteArray("caf\xE9 !") << QString();
        QTest::newRow("cut in a sequence") << QByteArray("\xE9\x8C") << QString();
        QTest::newRow("overlong") << QByteArray("a\xC0\x80") << QString();
        QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << QString();
        QTest::newRow("compressed") << QByteArray("\x1F\x8B\x08\x00", 4) << QString();
    }
    void bytesBecomeTextOnlyWhenTheyAreUtf8()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(error_body::text(bytes), text);
    }

    void anEmptyBodyIsNamed() { QCOMPARE(error_body::sanitized({}), QStringLiteral("沒有回傳錯誤內容。")); }

    void bearerTokensAreRedacted_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char *name, const char *body, const char *shown) {
            QTest::newRow(name) << QString::fromUtf8(body) << QString::fromUtf8(shown);
        };
        row("none", "not found", "not found");
        row("blanks only stay", "  ", "  ");
        row("header", "Authorization: Bearer sk-A1._z-\r\nHost: h",
            "Authorization: Bearer [redacted]\r\nHost: h");
        row("several", "Bearer a, Bearer b", "Bearer [redacted], Bearer [redacted]");
        row("several blanks", "Bearer  \t\n x!", "Bearer [redacted]!");
        row("ideographic space", "Bearer　x", "Bearer [redacted]");
        row("no-break space", "Bearer\u00A0x", "Bearer [redacted]");
        row("lower case stays", "bearer token", "bearer token");
        row("without token", "Bearer ", "Bearer ");
        row("colon is no token", "Bearer: x", "Bearer: x");
        row("token ends at another character", "Bearer abc/def", "Bearer [redacted]/def");
        row("in a word", "MyBearer abc", "MyBearer [redacted]");
        row("twice the same word", "Bearer Bearer x", "Bearer [redacted] x");
    }
    void bearerTokensAreRedacted()
    {
        QFETCH(QString, body);
        QFETCH(QString, shown);
        QCOMPARE(error_body::sanitized(body), shown);
    }

    void aLongBodyIsCutToSevenHundredCharacters_data()
    {
        QTest::addColumn<QString>("character");
        QTest::newRow("letter") << QStringLiteral("x");
        QTest::newRow("Chinese") << QStringLiteral("錯");
        QTest::newRow("outside the basic plane") << QStringLiteral("😀");
        QTest::newRow("letter with mark") << QStringLiteral("e\u0301");
        QTest::newRow("family") << QStringLiteral("👩‍👩‍👧‍👦");
        QTest::newRow("line end of two") << QStringLiteral("\r\n");
        QTest::newRow("many marks") << QStringLiteral("a") + QString(50, QChar(0x0301));
    }
    void aLongBodyIsCutToSevenHundredCharacters()
    {
        QFETCH(QString, character);
        QCOMPARE(error_body::sanitized(character.repeated(699)), character.repeated(699));
        QCOMPARE(error_body::sanitized(character.repeated(700)), character.repeated(700));
        QCOMPARE(error_body::sanitized(character.repeated(701)), character.repeated(700));
        QCOMPARE(error_body::sanitized(character.repeated(2000)), character.repeated(700));
    }

    void theBodyIsCutBeforeTokensAreRedacted()
    {
        const QString padding(690, u'x');
        QCOMPARE(error_body::sanitized(padding + QStringLiteral("Bearer abcdefgh")),
            padding + QStringLiteral("Bearer [redacted]"));
        // What is cut off is not counted, even though the redacted text is shorter than the token.
        QCOMPARE(error_body::sanitized(QStringLiteral("Bearer ") + QString(2000, u'a')),
            QStringLiteral("Bearer [redacted]"));
        const QString cutInTheWord(695, u'x');
        QCOMPARE(error_body::sanitized(cutInTheWord + QStringLiteral("Bearer secret")),
            cutInTheWord + QStringLiteral("Beare"));
    }

    void theSecretItselfNeverShows_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("secret");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char *name, const char *text, const char *secret, const char *shown) {
            QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(secret)
                                << QString::fromUtf8(shown);
        };
        row("absent", "nothing here", "sk-12345678", "nothing here");
        row("quoted", "Incorrect API key provided: sk-12345678.", "sk-12345678",
            "Incorrect API key provided: [redacted].");
        row("twice", "sk-12345678 sk-12345678", "sk-12345678", "[redacted] [redacted]");
        row("cut at the end", "key sk-1234567", "sk-12345678", "key [redacted]");
        row("in JSON", R"({"key": "sk-12\/34+56="})", "sk-12/34+56=", R"({"key": "[redacted]"})");
        row("in an address", "/v1?key=sk-12%2F34%2B56%3D", "sk-12/34+56=", "/v1?key=[redacted]");
        row("too short a beginning", "key sk-1234", "sk-12345678", "key sk-1234");
        row("a short key is no secret", "a bad day", "a", "a bad day");
        row("no key", "text", "", "text");
    }
    void theSecretItselfNeverShows()
    {
        QFETCH(QString, text);
        QFETCH(QString, secret);
        QFETCH(QString, shown);
        QCOMPARE(error_body::withoutSecret(text, secret), shown);
    }
};

LUMAPHONE_TEST(ErrorBodyTest)

} // namespace errorbodytest

#include "ErrorBodyTest.moc"
