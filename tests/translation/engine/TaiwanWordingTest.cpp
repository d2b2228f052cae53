#include "translation/engine/TaiwanWording.h"

#include "base/AtomicFile.h"
#include "support/program/TestProgram.h"
#include "translation/engine/EngineError.h"

#include <QTemporaryDir>
#include <QTest>

namespace taiwanwordingtest {

using namespace lumaphone;
using namespace lumaphone::engine;

class TaiwanWordingTest : public QObject
{
    Q_OBJECT

private slots:
    void textsAreRewritten_data()
    {
        QTest::addColumn<int>("written");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rewritten");
        const auto row
            = [](const char *title, WrittenChinese written, const QString &text, const QString &rewritten) {
                  QTest::newRow(title) << int(written) << text << rewritten;
              };
        using enum WrittenChinese;
        row("other languages stay", None, QStringLiteral("软件 software"), QStringLiteral("软件 software"));
        row("Taiwan's words", Traditional, QStringLiteral("這個軟件的信息"),
            QStringLiteral("這個軟體的資訊"));
        row("Taiwan's characters", Traditional, QStringLiteral("裏面爲了"), QStringLiteral("裡面為了"));
        row("a village head stays", Traditional, QStringLiteral("里長來了"), QStringLiteral("里長來了"));
        row("a family name stays", Traditional, QStringLiteral("范先生"), QStringLiteral("范先生"));
        row("placeholders stay", Traditional, QStringLiteral("請問LUMAPHON_TERM_0在哪裏"),
            QStringLiteral("請問LUMAPHON_TERM_0在哪裡"));
        row("Simplified is converted", Simplified, QStringLiteral("这个软件的信息"),
            QStringLiteral("這個軟體的資訊"));
        row("by words, not characters", Simplified, QStringLiteral("头发发展"), QStringLiteral("頭髮發展"));
        row("nothing", Simplified, QString(), QString());
    }

    void textsAreRewritten()
    {
        QFETCH(int, written);
        QFETCH(QString, text);
        QFETCH(QString, rewritten);
        const TaiwanWording wording {WrittenChinese(written)};
        QCOMPARE(wording.rewrite(text), rewritten);
    }

    void damagedDictionariesAreUnavailable_data()
    {
        QTest::addColumn<int>("written");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("named");
        using enum WrittenChinese;
        QTest::newRow("another file")
            << int(Traditional) << "TWPhrases.ocd2" << QByteArray("no dictionary") << "TWPhrases";
        QTest::newRow("only a beginning")
            << int(Traditional) << "TWPhrases.ocd2" << QByteArray("OPENCC_MARISA_0.2.5") << "TWPhrases";
        QTest::newRow("not its language") << int(Simplified) << "s2twp.json" << QByteArray("{") << "s2twp";
        QTest::newRow("none") << int(Simplified) << "other.json" << QByteArray("{}") << "s2twp";
    }

    void damagedDictionariesAreUnavailable()
    {
        QFETCH(int, written);
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, named);
        const QTemporaryDir folder;
        replaceFile(folder.filePath(file), bytes, Durability::Renamed);
        try {
            const TaiwanWording wording(WrittenChinese(written), folder.path());
            QFAIL("loaded");
        } catch (const EngineError &error) {
            QCOMPARE(error.which(), EngineError::Case::Unavailable);
            QCOMPARE(error.path(), named);
            QVERIFY(!error.subject().isEmpty());
        }
    }
};

LUMAPHONE_TEST(TaiwanWordingTest)

} // namespace taiwanwordingtest

#include "TaiwanWordingTest.moc"
