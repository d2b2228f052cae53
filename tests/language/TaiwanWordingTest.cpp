#include "language/TaiwanWording.h"

#include "base/AtomicFile.h"
#include "base/LocalizedError.h"
#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

namespace taiwanwordingtest {

using namespace lumaphone;

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
        row("other languages stay", none, QStringLiteral("软件 software"), QStringLiteral("软件 software"));
        row("Taiwan's words", traditional, QStringLiteral("這個軟件的信息"),
            QStringLiteral("這個軟體的資訊"));
        row("Taiwan's characters", traditional, QStringLiteral("裏面爲了"), QStringLiteral("裡面為了"));
        row("a village head stays", traditional, QStringLiteral("里長來了"), QStringLiteral("里長來了"));
        row("a family name stays", traditional, QStringLiteral("范先生"), QStringLiteral("范先生"));
        row("placeholders stay", traditional, QStringLiteral("請問LUMAPHON_TERM_0在哪裏"),
            QStringLiteral("請問LUMAPHON_TERM_0在哪裡"));
        row("Simplified is converted", simplified, QStringLiteral("这个软件的信息"),
            QStringLiteral("這個軟體的資訊"));
        row("by words, not characters", simplified, QStringLiteral("头发发展"), QStringLiteral("頭髮發展"));
        row("words of Taiwan", simplified, QStringLiteral("请打开鼠标和网络软件"),
            QStringLiteral("請開啟滑鼠和網路軟體"));
        row("characters of Taiwan", simplified, QStringLiteral("这里"), QStringLiteral("這裡"));
        row("what is Taiwan's already", simplified, QStringLiteral("這是字幕測試"),
            QStringLiteral("這是字幕測試"));
        row("with Latin and marks", simplified, QStringLiteral("用 OpenAI 的信息。"),
            QStringLiteral("用 OpenAI 的資訊。"));
        row("outside the first plane", simplified, QStringLiteral("𠮷野"), QStringLiteral("𠮷野"));
        row("nothing", simplified, QString(), QString());
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
            << int(traditional) << "TWPhrases.ocd2" << QByteArray("no dictionary") << "TWPhrases";
        QTest::newRow("only a beginning")
            << int(traditional) << "TWPhrases.ocd2" << QByteArray("OPENCC_MARISA_0.2.5") << "TWPhrases";
        QTest::newRow("not its language") << int(simplified) << "s2twp.json" << QByteArray("{") << "s2twp";
        QTest::newRow("none") << int(simplified) << "other.json" << QByteArray("{}") << "s2twp";
    }

    void damagedDictionariesAreUnavailable()
    {
        QFETCH(int, written);
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, named);
        const QTemporaryDir folder;
        replaceFile(folder.filePath(file), bytes, Durability::renamed);
        try {
            const TaiwanWording wording(WrittenChinese(written), folder.path());
            QFAIL("loaded");
        } catch (const PlatformError &error) {
            const QString beginning
                = QStringLiteral("無法載入中文用詞轉換字典「%1」（套件 libopencc-data）：").arg(named);
            QVERIFY2(error.errorDescription().startsWith(beginning), error.what());
            QVERIFY(error.errorDescription() != beginning);
        }
    }
};

LUMAPHONE_TEST(TaiwanWordingTest)

} // namespace taiwanwordingtest

#include "TaiwanWordingTest.moc"
