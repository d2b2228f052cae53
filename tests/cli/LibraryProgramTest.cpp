#include "base/AtomicFile.h"
#include "base/Json.h"
#include "session/LumaphoneSessionDraftStore.h"
#include "support/CountedUuids.h"
#include "support/RunningProgram.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <pty.h>
#include <unistd.h>

#include <array>
#include <memory>

namespace libraryprogramtest {

using namespace lumaphone;
using test::countedUuid;
using test::RunningProgram;

namespace {

const QString program = QStringLiteral(LUMAPHONE_CLI);

LumaphoneCaptionLine line(uint number, const QString &source, const QString &translation, int seconds)
{
    LumaphoneCaptionLine result;
    result.id = countedUuid(number);
    result.sourceText = source;
    result.sourceLanguage = AppleSystemSpeechLanguage::english;
    result.translatedText = translation;
    result.createdAt = QDateTime(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc()).addSecs(seconds);
    result.isFinal = true;
    return result;
}

/// A user with folders of their own.
struct User
{
    QTemporaryDir home;

    QList<std::pair<QString, QString>> environment() const
    {
        return {{"HOME", home.path()}, {"XDG_CONFIG_HOME", home.filePath("config")},
            {"XDG_DATA_HOME", home.filePath("data")}, {"XDG_RUNTIME_DIR", home.path()}, {"TZ", "UTC"},
            {"LC_ALL", "C.UTF-8"}, {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus"}};
    }
    std::unique_ptr<RunningProgram> run(const QStringList &arguments) const
    {
        auto running = std::make_unique<RunningProgram>(program, arguments, environment());
        running->closeInput();
        running->waitForEnd();
        return running;
    }
    LumaphoneSessionDraftStore drafts() const
    {
        return LumaphoneSessionDraftStore(home.filePath("data/Lumaphone/Drafts"));
    }
    QString indexPath() const { return home.filePath("data/Lumaphone/Transcripts/index.json"); }

    void leaveDraft() const
    {
        drafts().save({.lines = {line(1, "Tea is ready", "茶準備好了", 1),
                           line(2, "Open the Lumaphone window", "翻譯中...", 4)},
            .sourceLanguage = AppleSystemSpeechLanguage::automatic,
            .detectedLanguage = AppleSystemSpeechLanguage::english,
            .startedAt = QDateTime(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc()),
            .endedAt = QDateTime(QDate(2026, 1, 31), QTime(8, 1), QTimeZone::utc()),
            .updatedAt = QDateTime(QDate(2026, 1, 31), QTime(8, 1), QTimeZone::utc())});
    }
    /// Saves a draft and returns the new transcript's id.
    QString saveDraft() const
    {
        leaveDraft();
        const auto saving = run({"library", "save"});
        if (saving->exitCode() != 0) {
            qWarning("%s", saving->messages().constData());
        }
        return QString::fromUtf8(run({"library", "list"})->outputLines().value(0)).section('\t', 0, 0);
    }
    /// A library whose index lists records with these ids.
    void list(const QStringList &ids) const
    {
        json::Value index = json::Value::array();
        for (const QString &id : ids) {
            index.push_back({{"id", json::fromText(id)}, {"title", json::fromText("Title " + id.first(4))},
                {"note", ""}, {"createdAt", "2026-01-31T08:00:00Z"}, {"sourceLanguage", "english"},
                {"targetLanguage", "zh-TW"}, {"processingMode", "appleMode"},
                {"providerName", "Apple Translation"}, {"lineCount", 3}, {"folderName", json::fromText(id)},
                {"searchText", json::fromText("words of " + id.first(4))}});
        }
        QDir().mkpath(QFileInfo(indexPath()).path());
        replaceFile(indexPath(), json::pretty(index), Durability::renamed);
    }
};

const QString idA = QStringLiteral("AAAA0000-0000-4000-8000-000000000001");
const QString idB = QStringLiteral("AAAA1111-0000-4000-8000-000000000002");

} // namespace

class LibraryProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void theDraftBecomesATranscript()
    {
        const User user;
        QCOMPARE(user.run({"glossary", "add", "lumaphone"})->exitCode(), 0);
        QCOMPARE(user.run({"glossary", "add", "coffee"})->exitCode(), 0);
        user.leaveDraft();
        const auto saving = user.run({"library", "save"});
        QCOMPARE(saving->exitCode(), 0);
        QCOMPARE(saving->messages(), QByteArray());
        QVERIFY(saving->output().startsWith("Transcript 已儲存：Lumaphone Transcript "));
        QVERIFY(!QFile::exists(user.drafts().draftPath()));

        const json::Value index = json::parse(readFile(user.indexPath()).value_or(QByteArray()));
        QCOMPARE(index.size(), std::size_t(1));
        const json::Value &record = index[0];
        QCOMPARE(json::text(record, "detectedLanguage"), QStringLiteral("english"));
        QCOMPARE(json::text(record, "startedAt"), QStringLiteral("2026-01-31T08:00:00Z"));
        QCOMPARE(json::integer(record, "lineCount"), 2);
        const json::Value &terms = json::member(record, "glossaryTerms");
        QCOMPARE(terms.size(), std::size_t(1));
        QCOMPARE(json::text(terms[0], "source"), QStringLiteral("lumaphone"));
    }

    void withoutADraftNothingIsSaved()
    {
        const User user;
        const auto saving = user.run({"library", "save"});
        QCOMPARE(saving->exitCode(), 1);
        QCOMPARE(saving->messages(), QByteArray("沒有尚未儲存的字幕草稿。\n"));
        QVERIFY(!QFile::exists(user.indexPath()));
    }

    void aDraftWithoutWordsIsRefusedAndStays()
    {
        const User user;
        user.drafts().save({.lines = {line(1, " ", "", 0)},
            .sourceLanguage = AppleSystemSpeechLanguage::english,
            .detectedLanguage = {},
            .startedAt = {},
            .endedAt = {},
            .updatedAt = QDateTime(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc())});
        const auto saving = user.run({"library", "save"});
        QCOMPARE(saving->exitCode(), 1);
        QCOMPARE(saving->messages(), QByteArray("目前沒有可儲存的字幕。\n"));
        QVERIFY(QFile::exists(user.drafts().draftPath()));
    }

    void aTranscriptIsShown()
    {
        const User user;
        const auto shown = user.run({"library", "show", user.saveDraft().first(8).toLower()});
        QCOMPARE(shown->exitCode(), 0);
        const QList<QByteArray> lines = shown->outputLines();
        QCOMPARE(lines.mid(2),
            (QList<QByteArray> {"", "Tea is ready", "  茶準備好了", "Open the Lumaphone window"}));
        QVERIFY(lines[1].contains("英文 -> 台灣繁中") && lines[1].contains("2 段"));
    }

    void aTranscriptIsExportedInEveryForm_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("output");
        QTest::newRow("source") << QStringList {"--format", "txt", "--text", "source"}
                                << QByteArray("Tea is ready\n\nOpen the Lumaphone window\n");
        QTest::newRow("translation") << QStringList {"--format=txt", "--text=translation"}
                                     << QByteArray("茶準備好了\n\n");
        QTest::newRow("both") << QStringList {"--format", "txt"}
                              << QByteArray("原文：\nTea is ready\n\n台灣繁中：\n茶準備好了\n\n---\n\n"
                                            "原文：\nOpen the Lumaphone window\n\n台灣繁中：\n");
        QTest::newRow("SubRip") << QStringList {"--format", "srt", "--text", "translation"}
                                << QByteArray("1\n00:00:01,000 --> 00:00:04,000\n茶準備好了\n\n");
        QTest::newRow("WebVTT") << QStringList {"--format", "vtt"}
                                << QByteArray(
                                       "WEBVTT\n\n00:00:01.000 --> 00:00:04.000\nTea is ready\n茶準備好了\n\n"
                                       "00:00:04.000 --> 00:00:11.000\nOpen the Lumaphone window\n\n");
    }
    void aTranscriptIsExportedInEveryForm()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, output);
        const User user;
        const QString id = user.saveDraft();
        const auto exporting = user.run(QStringList {"library", "export", id} + options);
        QCOMPARE(exporting->messages(), QByteArray());
        QCOMPARE(exporting->output(), output);
        QCOMPARE(exporting->exitCode(), 0);

        const QString path = user.home.filePath("匯出 檔");
        QCOMPARE(user.run(QStringList {"library", "export", id, "-o", path} + options)->exitCode(), 0);
        QCOMPARE(readFile(path), std::optional(output));
    }

    void markdownAndJsonHoldTheWholeTranscript()
    {
        const User user;
        const QString id = user.saveDraft();
        const QByteArray page = user.run({"library", "export", id, "--format", "md"})->output();
        QVERIFY(page.startsWith("# Lumaphone Transcript "));
        QVERIFY(page.contains("\n- 語言：英文 -> 台灣繁中\n- Provider：Apple Translation\n- 段落數：2\n\n"));
        QVERIFY(page.endsWith("## 2\n\n**原文**\n\nOpen the Lumaphone window\n\n**譯文**\n\n"));
        const json::Value document
            = json::parse(user.run({"library", "export", id, "--format", "json"})->output());
        QCOMPARE(json::text(json::member(document, "metadata"), "id"), id);
        QCOMPARE(
            json::text(json::member(document, "lines")[0], "translatedText"), QStringLiteral("茶準備好了"));
    }

    void aFileThatCannotBeWrittenIsSaid()
    {
        const User user;
        const QString path = user.home.filePath("missing/file.srt");
        const auto exporting
            = user.run({"library", "export", user.saveDraft(), "--format", "srt", "-o", path});
        QCOMPARE(exporting->exitCode(), 1);
        QVERIFY(exporting->messages().contains("missing/file.srt"));
    }

    void transcriptsAreListedAndSearched()
    {
        const User user;
        user.list({idA, idB});
        const auto all = user.run({"library", "list"});
        QCOMPARE(all->exitCode(), 0);
        QCOMPARE(all->outputLines(),
            (QList<QByteArray> {(idA + "\t2026-01-31 08:00\t3\tTitle AAAA").toUtf8(),
                (idB + "\t2026-01-31 08:00\t3\tTitle AAAA").toUtf8()}));
        QCOMPARE(user.run({"library", "list", "--search", " WORDS OF "})->outputLines().size(), 2);
        const auto none = user.run({"library", "list", "--search", "tea"});
        QCOMPARE(none->output(), QByteArray());
        QCOMPARE(none->exitCode(), 0);
    }

    void aBeginningNamesATranscriptOnlyIfNoOtherHasIt()
    {
        const User user;
        user.list({idA, idB});
        const auto both = user.run({"library", "show", "aaaa"});
        QCOMPARE(both->exitCode(), 1);
        QVERIFY(both->messages().startsWith("有 2 筆字幕紀錄的 ID 以「aaaa」開頭"));
        QVERIFY(both->messages().contains(idA.toUtf8()) && both->messages().contains(idB.toUtf8()));
        const auto none = user.run({"library", "show", "AAAA2"});
        QCOMPARE(none->exitCode(), 1);
        QCOMPARE(none->messages(), QByteArray("找不到 ID 以「AAAA2」開頭的字幕紀錄。\n"));
        // The record is found; its folder is not there.
        const auto gone = user.run({"library", "show", "aaaa1"});
        QCOMPARE(gone->exitCode(), 1);
        QVERIFY(gone->messages().contains("找不到 session 資料夾"));
    }

    void deletingWithoutATerminalNeedsAYes()
    {
        const User user;
        const QString id = user.saveDraft();
        const auto refused = user.run({"library", "delete", id});
        QCOMPARE(refused->exitCode(), 2);
        QVERIFY(refused->messages().contains("--yes"));
        QCOMPARE(user.run({"library", "list"})->outputLines().size(), 1);
        const auto deleted = user.run({"library", "delete", id, "--yes"});
        QCOMPARE(deleted->exitCode(), 0);
        QVERIFY(deleted->output().startsWith("已刪除「Lumaphone Transcript "));
        QCOMPARE(user.run({"library", "list"})->output(), QByteArray());
        const QDir sessions(user.home.filePath("data/Lumaphone/Transcripts/sessions"));
        QVERIFY(sessions.entryList(QDir::AllEntries | QDir::NoDotAndDotDot).isEmpty());
    }

    void deletingAsksOnATerminal_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("exitStatus");
        QTest::newRow("y") << QByteArray("y\n") << 0;
        QTest::newRow("YES") << QByteArray("YES\n") << 0;
        QTest::newRow("nothing") << QByteArray("\n") << 1;
        QTest::newRow("another word") << QByteArray("yesterday\n") << 1;
        QTest::newRow("the end of input") << QByteArray("\x04") << 1;
    }
    void deletingAsksOnATerminal()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, exitStatus);
        const User user;
        user.list({idA});
        int terminal = -1;
        int itsOtherSide = -1;
        std::array<char, 64> name {};
        QCOMPARE(::openpty(&terminal, &itsOtherSide, name.data(), nullptr, nullptr), 0);
        QProcess deleting;
        deleting.setStandardInputFile(QString::fromLatin1(name.data()));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const auto &[key, value] : user.environment()) {
            environment.insert(key, value);
        }
        deleting.setProcessEnvironment(environment);
        deleting.start(program, {"library", "delete", "AAAA"});
        QCOMPARE(::write(terminal, answer.constData(), std::size_t(answer.size())), answer.size());
        QVERIFY(deleting.waitForFinished(60000));
        ::close(itsOtherSide);
        ::close(terminal);
        QVERIFY(deleting.readAllStandardError().contains(
            "要刪除「Title AAAA」（2026-01-31 08:00，3 段）嗎？刪除後無法復原。 [y/N] "));
        QCOMPARE(deleting.exitCode(), exitStatus);
        QCOMPARE(user.run({"library", "list"})->outputLines().size(), exitStatus == 0 ? 0 : 1);
    }

    void aDamagedIndexIsRebuiltAndSaid()
    {
        const User user;
        const QString id = user.saveDraft();
        replaceFile(user.indexPath(), "[", Durability::renamed);
        const auto listing = user.run({"library", "list"});
        QCOMPARE(listing->exitCode(), 0);
        QVERIFY(listing->output().startsWith(id.toUtf8()));
        QVERIFY(listing->messages().contains("已從 1 個 session 資料夾重建索引"));
        QCOMPARE(user.run({"library", "list"})->messages(), QByteArray());
    }

    void glossariesAreExportedAndImported()
    {
        const User user;
        const QString path = user.home.filePath("詞彙.yaml");
        QCOMPARE(user.run({"glossary", "add", "tea", "--target", "\"茶\"", "--note", "n"})->exitCode(), 0);
        QCOMPARE(user.run({"glossary", "add", "two\nlines"})->exitCode(), 0);
        const auto exporting = user.run({"glossary", "export", path});
        QCOMPARE(exporting->exitCode(), 0);
        QCOMPARE(exporting->output(), QByteArray("已匯出 2 個詞彙。\n"));
        QCOMPARE(exporting->messages(), QByteArray("「two lines」含有換行，再匯入時會不完整。\n"));

        const User other;
        QCOMPARE(other.run({"glossary", "import", path})->output(), QByteArray("已加入 2 個詞彙。\n"));
        QCOMPARE(other.run({"glossary", "list"})->outputLines().value(0),
            QByteArray("on\ttranslate\ttea\t\"茶\"\t"));
        QCOMPARE(other.run({"glossary", "import", path})->output(), QByteArray("已加入 0 個詞彙。\n"));
    }

    void aGlossaryFileThatCannotBeReadIsSaid()
    {
        const User user;
        const auto missing = user.run({"glossary", "import", user.home.filePath("missing.csv")});
        QCOMPARE(missing->exitCode(), 1);
        QVERIFY(missing->messages().contains("missing.csv"));
        const QString path = user.home.filePath("terms.txt");
        replaceFile(path, "a,b\n", Durability::renamed);
        const auto unknown = user.run({"glossary", "import", path});
        QCOMPARE(unknown->exitCode(), 1);
        QCOMPARE(unknown->messages(), QByteArray("Glossary 只支援 JSON、YAML 或 CSV。\n"));
    }
};

LUMAPHONE_TEST(LibraryProgramTest)

} // namespace libraryprogramtest

#include "LibraryProgramTest.moc"
