#include "cli/CommandLine.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace commandlinetest {

using namespace lumaphone;
using namespace lumaphone::cli;

using Language = AppleSystemSpeechLanguage;

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void aCaptionCommandIsRead_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<CaptionCommandLine>("expected");
        const auto row
            = [](const char *name, const QStringList &arguments, const CaptionCommandLine &expected) {
                  QTest::newRow(name) << arguments << expected;
              };
        row("defaults", {"system"}, {SystemAudioInput {}, Language::automatic, OutputFormat::text});
        row("microphone", {"microphone"},
            {MicrophoneInputChoice {}, Language::automatic, OutputFormat::text});
        row("a file", {"talk.wav"},
            {SoundFileInput {"talk.wav", false}, Language::automatic, OutputFormat::text});
        row("a file at the speed of sound", {"talk.wav", "--realtime"},
            {SoundFileInput {"talk.wav", true}, Language::automatic, OutputFormat::text});
        row("a file named like an input", {"./system"},
            {SoundFileInput {"./system", false}, Language::automatic, OutputFormat::text});
        row("translated by the service", {"system", "--translate", "custom"},
            {SystemAudioInput {}, Language::automatic, OutputFormat::text, TranslationChoice::custom});
        row("not translated, with a draft", {"system", "--translate=off", "--draft"},
            {SystemAudioInput {}, Language::automatic, OutputFormat::text, TranslationChoice::off, true});
        row("options in front", {"--language", "korean", "--format", "jsonl", "system"},
            {SystemAudioInput {}, Language::korean, OutputFormat::jsonLines});
        row("options with an equals sign", {"system", "--language=mandarin", "--format=text"},
            {SystemAudioInput {}, Language::mandarin, OutputFormat::text});
        row("a file that looks like an option", {"--", "--realtime"},
            {SoundFileInput {"--realtime", false}, Language::automatic, OutputFormat::text});
    }

    void aCaptionCommandIsRead()
    {
        QFETCH(QStringList, arguments);
        QFETCH(CaptionCommandLine, expected);
        const CommandLine command = parseCommandLine(QStringList {"caption"} + arguments);
        QVERIFY(std::holds_alternative<CaptionCommandLine>(command));
        QVERIFY(std::get<CaptionCommandLine>(command) == expected);
    }

    void wrongUsageIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *name, const QStringList &arguments, const QString &reason) {
            QTest::newRow(name) << arguments << reason;
        };
        row("nothing", {}, QStringLiteral("缺少指令"));
        row("unknown command", {"record"}, QStringLiteral("不認得的指令：record"));
        row("no input", {"caption"},
            QStringLiteral("caption 需要一個 INPUT：system、microphone 或音訊檔的路徑"));
        row("an empty input", {"caption", ""},
            QStringLiteral("caption 需要一個 INPUT：system、microphone 或音訊檔的路徑"));
        row("two inputs", {"caption", "a.wav", "b.wav"},
            QStringLiteral("caption 需要一個 INPUT：system、microphone 或音訊檔的路徑"));
        row("unknown option", {"caption", "system", "--loud"}, QStringLiteral("不認得的選項：loud"));
        row("unknown language", {"caption", "system", "--language", "Japanese"},
            QStringLiteral("不認得的語言：Japanese（可用 automatic、japanese、english、korean、mandarin）"));
        row("unknown format", {"caption", "system", "--format", "json"},
            QStringLiteral("不認得的輸出格式：json（可用 text、jsonl）"));
        row("unknown translation", {"caption", "system", "--translate", "deepl"},
            QStringLiteral("不認得的翻譯方式：deepl（可用 off、apple、custom）"));
        row("draft without a verb", {"draft"}, QStringLiteral("draft 的用法：show 或 discard"));
        row("settings without a verb", {"settings"},
            QStringLiteral("settings 的用法：list、get KEY 或 set KEY VALUE"));
        row("settings set without a value", {"settings", "set", "lumaphone.provider.model"},
            QStringLiteral("settings 的用法：list、get KEY 或 set KEY VALUE"));
        row("a key among the arguments", {"key", "set", "sk-123"},
            QStringLiteral("key 的用法：set、clear 或 status；API 金鑰由標準輸入讀取"));
        row("glossary without a term", {"glossary", "add"},
            QStringLiteral("glossary 的用法：list、add SOURCE、remove SOURCE、enable SOURCE、"
                           "disable SOURCE、import FILE 或 export FILE"));
        row("a blank term", {"glossary", "add", " "},
            QStringLiteral("glossary 的用法：list、add SOURCE、remove SOURCE、enable SOURCE、"
                           "disable SOURCE、import FILE 或 export FILE"));
        row("library without a verb", {"library"},
            QStringLiteral("library 的用法：list、show ID、export ID、delete ID 或 save"));
        row("library show without an id", {"library", "show"},
            QStringLiteral("library 的用法：list、show ID、export ID、delete ID 或 save"));
        row("an empty id", {"library", "delete", "", "--yes"},
            QStringLiteral("library 的用法：list、show ID、export ID、delete ID 或 save"));
        row("an unknown verb of the library", {"library", "rename", "a"},
            QStringLiteral("library 的用法：list、show ID、export ID、delete ID 或 save"));
        row("export without a format", {"library", "export", "a"},
            QStringLiteral("library export 需要 --format（可用 md、txt、srt、vtt、json）"));
        row("export in an unknown format", {"library", "export", "a", "--format", "pdf"},
            QStringLiteral("不認得的輸出格式：pdf（可用 md、txt、srt、vtt、json）"));
        row("a part of the Markdown", {"library", "export", "a", "--format", "md", "--text", "source"},
            QStringLiteral("--text 只能用於 txt、srt 和 vtt；md 和 json 一律包含原文與譯文"));
        row("a part of the JSON", {"library", "export", "a", "--format", "json", "--text", "bilingual"},
            QStringLiteral("--text 只能用於 txt、srt 和 vtt；md 和 json 一律包含原文與譯文"));
        row("an unknown part", {"library", "export", "a", "--format", "srt", "--text", "both"},
            QStringLiteral("不認得的內容：both（可用 source、translation、bilingual）"));
        row("an empty file name", {"library", "export", "a", "--format", "srt", "-o", ""},
            QStringLiteral("--output 需要檔案名稱"));
        row("another verb's option", {"library", "list", "--yes"},
            QStringLiteral("library list 沒有選項 --yes"));
        row("translate without a target", {"glossary", "add", "tea", "--mode", "translate"},
            QStringLiteral("translate 需要 --target"));
        row("unknown mode", {"glossary", "add", "tea", "--mode", "keep"},
            QStringLiteral("不認得的處理方式：keep（可用 preserve、translate）"));
        row("the speed of sound for live sound", {"caption", "system", "--realtime"},
            QStringLiteral("--realtime 只能用於音訊檔"));
    }

    void wrongUsageIsRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, reason);
        const auto error = test::thrownBy<UsageError>([&] { parseCommandLine(arguments); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), reason);
    }

    void settingsCommandsAreRead()
    {
        QVERIFY(std::holds_alternative<SettingsList>(parseCommandLine({"settings", "list"})));
        QCOMPARE(std::get<SettingsGet>(parseCommandLine({"settings", "get", "a.key"})).key,
            QStringLiteral("a.key"));
        const auto set = std::get<SettingsSet>(parseCommandLine({"settings", "set", "a.key", ""}));
        QCOMPARE(set.key, QStringLiteral("a.key"));
        QCOMPARE(set.value, QString());
        QVERIFY(std::holds_alternative<KeySet>(parseCommandLine({"key", "set"})));
        QVERIFY(std::holds_alternative<KeyClear>(parseCommandLine({"key", "clear"})));
        QVERIFY(std::holds_alternative<KeyStatus>(parseCommandLine({"key", "status"})));
    }

    void glossaryCommandsAreRead()
    {
        QVERIFY(std::holds_alternative<GlossaryList>(parseCommandLine({"glossary", "list"})));
        const auto kept = std::get<GlossaryAdd>(parseCommandLine({"glossary", "add", " Lumaphone "}));
        QCOMPARE(kept.source, QStringLiteral("Lumaphone"));
        QCOMPARE(kept.mode, LumaphoneGlossaryTermMode::preserve);
        QVERIFY(!kept.caseSensitive);
        const auto translated = std::get<GlossaryAdd>(parseCommandLine(
            {"glossary", "add", "tea", "--target", "茶", "--note", "n", "--case-sensitive"}));
        QCOMPARE(translated.mode, LumaphoneGlossaryTermMode::translate);
        QCOMPARE(translated.target, QStringLiteral("茶"));
        QCOMPARE(translated.note, QStringLiteral("n"));
        QVERIFY(translated.caseSensitive);
        QCOMPARE(std::get<GlossaryRemove>(parseCommandLine({"glossary", "remove", "tea"})).source,
            QStringLiteral("tea"));
        QVERIFY(std::get<GlossarySetEnabled>(parseCommandLine({"glossary", "enable", "tea"})).isEnabled);
        QVERIFY(!std::get<GlossarySetEnabled>(parseCommandLine({"glossary", "disable", "tea"})).isEnabled);
    }

    void libraryCommandsAreRead()
    {
        QCOMPARE(std::get<LibraryList>(parseCommandLine({"library", "list"})).search, QString());
        QCOMPARE(std::get<LibraryList>(parseCommandLine({"library", "list", "--search", "tea"})).search,
            QStringLiteral("tea"));
        QCOMPARE(std::get<LibraryShow>(parseCommandLine({"library", "show", "1A"})).id, QStringLiteral("1A"));
        QVERIFY(std::holds_alternative<LibrarySave>(parseCommandLine({"library", "save"})));
        QVERIFY(!std::get<LibraryDelete>(parseCommandLine({"library", "delete", "1A"})).isConfirmed);
        QVERIFY(std::get<LibraryDelete>(parseCommandLine({"library", "delete", "1A", "-y"})).isConfirmed);
        QVERIFY(std::get<LibraryExport>(parseCommandLine({"library", "export", "1A", "--format", "md"}))
            == (LibraryExport {"1A", TranscriptExport::markdown, TranscriptTextChoice::bilingual, {}}));
        QVERIFY(std::get<LibraryExport>(parseCommandLine(
                    {"library", "export", "--format=vtt", "--text=translation", "-o", "a.vtt", "1A"}))
            == (LibraryExport {"1A", TranscriptExport::webVtt, TranscriptTextChoice::translation, "a.vtt"}));
        QCOMPARE(std::get<GlossaryImport>(parseCommandLine({"glossary", "import", "a.csv"})).path,
            QStringLiteral("a.csv"));
        QCOMPARE(std::get<GlossaryExport>(parseCommandLine({"glossary", "export", "a.yaml"})).path,
            QStringLiteral("a.yaml"));
    }

    void aMissingValueIsRefused()
    {
        QVERIFY(test::thrownBy<UsageError>([] { parseCommandLine({"caption", "system", "--language"}); }));
    }

    void helpAndVersionAreTexts_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("beginning");
        QTest::newRow("program") << QStringList {"--help"} << QStringLiteral("用法：lumaphone-cli 指令");
        QTest::newRow("program, short") << QStringList {"-h"} << QStringLiteral("用法：lumaphone-cli 指令");
        QTest::newRow("caption") << QStringList {"caption", "--help"}
                                 << QStringLiteral("用法：lumaphone-cli caption");
        QTest::newRow("caption, beside other options")
            << QStringList {"caption", "system", "-h"} << QStringLiteral("用法：lumaphone-cli caption");
        QTest::newRow("version") << QStringList {"--version"} << QStringLiteral("lumaphone-cli ");
    }

    void helpAndVersionAreTexts()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, beginning);
        const CommandLine command = parseCommandLine(arguments);
        QVERIFY(std::holds_alternative<ShowText>(command));
        QVERIFY(std::get<ShowText>(command).text.startsWith(beginning));
    }
};

LUMAPHONE_TEST(CommandLineTest)

} // namespace commandlinetest

#include "CommandLineTest.moc"
