#include "cli/SettingsCommand.h"

#include "cli/CollectedStreams.h"
#include "storage/LumaphoneSettings.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace settingscommandtest {

using namespace lumaphone;
using namespace lumaphone::cli;

class SettingsCommandTest : public QObject
{
    Q_OBJECT

private:
    struct Fixture
    {
        test::MemoryDefaultsStore defaults;
        test::MemoryKeychain keychain;
        LumaphoneSettings settings {defaults, keychain};
        test::CollectedStreams printed;
    };

private slots:
    void allSettingsAreListed()
    {
        Fixture f;
        QCOMPARE(runSettingsList(f.settings, f.printed.streams), exitSuccess);
        QCOMPARE(f.printed.output,
            QByteArray("lumaphone.sourceLanguage\tautomatic\n"
                       "lumaphone.audioInputSource\tsystemAudio\n"
                       "lumaphone.processingMode\tappleMode\n"
                       "lumaphone.caption.fontSize\t34\n"
                       "lumaphone.caption.opacity\t0.3\n"
                       "lumaphone.caption.theme\tdark\n"
                       "lumaphone.caption.displayMode\tbilingual\n"
                       "lumaphone.caption.order\tsourceFirst\n"
                       "lumaphone.caption.font\t\n"
                       "lumaphone.caption.lineSpacing\t1\n"
                       "lumaphone.caption.lineWidth\t1\n"
                       "lumaphone.caption.lines\t0\n"
                       "lumaphone.caption.silence\t0\n"
                       "lumaphone.provider.baseURL\thttps://api.openai.com/v1\n"
                       "lumaphone.provider.model\tgpt-4o-mini\n"));
    }

    void aValueIsSetAndRead_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<DefaultsValue>("stored");
        const auto row = [](const char *key, const QString &value, const DefaultsValue &stored) {
            QTest::addRow("%s = %s", key, qPrintable(value)) << QString::fromLatin1(key) << value << stored;
        };
        row("lumaphone.sourceLanguage", "korean", QStringLiteral("korean"));
        row("lumaphone.audioInputSource", "microphone", QStringLiteral("microphone"));
        row("lumaphone.processingMode", "customAPI", QStringLiteral("customAPI"));
        row("lumaphone.caption.fontSize", "28.5", 28.5);
        row("lumaphone.caption.opacity", "1", 1.0);
        row("lumaphone.caption.theme", "glass", QStringLiteral("glass"));
        row("lumaphone.caption.displayMode", "sourceOnly", QStringLiteral("sourceOnly"));
        row("lumaphone.caption.order", "translationFirst", QStringLiteral("translationFirst"));
        row("lumaphone.caption.font", "Some Font", QStringLiteral("Some Font"));
        row("lumaphone.caption.lineSpacing", "1.5", 1.5);
        row("lumaphone.caption.lineWidth", "0.6", 0.6);
        row("lumaphone.caption.lines", "3", 3.0);
        row("lumaphone.caption.silence", "10", 10.0);
        row("lumaphone.provider.baseURL", "", QString(""));
        row("lumaphone.provider.model", " a model ", QStringLiteral(" a model "));
    }

    void aValueIsSetAndRead()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(DefaultsValue, stored);
        Fixture f;
        QCOMPARE(runSettingsSet({key, value}, f.settings, f.printed.streams), exitSuccess);
        QCOMPARE(f.printed.output + f.printed.messages, QByteArray());
        QVERIFY(f.defaults.object(key) == stored);
        QCOMPARE(runSettingsGet({key}, f.settings, f.printed.streams), exitSuccess);
        QCOMPARE(QString::fromUtf8(f.printed.output), value + QLatin1Char('\n'));
    }

    void aValueOfTheWrongKindIsRefused_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("wanted");
        QTest::newRow("unknown language")
            << QStringLiteral("lumaphone.sourceLanguage") << QStringLiteral("Korean")
            << QStringLiteral("automatic、japanese、english、korean、mandarin");
        QTest::newRow("words for a number") << QStringLiteral("lumaphone.caption.fontSize")
                                            << QStringLiteral("large") << QStringLiteral("數字");
        QTest::newRow("no finite number")
            << QStringLiteral("lumaphone.caption.opacity") << QStringLiteral("inf") << QStringLiteral("數字");
        QTest::newRow("nothing for a number")
            << QStringLiteral("lumaphone.caption.opacity") << QString() << QStringLiteral("數字");
    }

    void aValueOfTheWrongKindIsRefused()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, wanted);
        Fixture f;
        QCOMPARE(runSettingsSet({key, value}, f.settings, f.printed.streams), exitUsage);
        QVERIFY(QString::fromUtf8(f.printed.messages).contains(wanted));
        QVERIFY(!f.defaults.object(key));
    }

    void anUnknownKeyIsRefused()
    {
        Fixture f;
        QCOMPARE(runSettingsGet({"lumaphone.volume"}, f.settings, f.printed.streams), exitUsage);
        QCOMPARE(runSettingsSet({"lumaphone.volume", "1"}, f.settings, f.printed.streams), exitUsage);
        QCOMPARE(f.printed.messages.count("lumaphone.volume"), 2);
        QCOMPARE(f.printed.output, QByteArray());
    }
};

LUMAPHONE_TEST(SettingsCommandTest)

} // namespace settingscommandtest

#include "SettingsCommandTest.moc"
