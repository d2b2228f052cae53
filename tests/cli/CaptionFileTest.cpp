#include "base/Json.h"
#include "cli/ProgramCopy.h"
#include "support/RunningProgram.h"
#include "support/program/TestProgram.h"
#include "support/speech-scores/SpokenRecordings.h"
#include "support/speech-scores/WordSpelling.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QTest>

#include <sndfile.h>

#include <csignal>
#include <vector>

namespace captionfiletest {

using namespace lumaphone;
using test::RunningProgram;

namespace {

const QString program = QStringLiteral(LUMAPHONE_CLI);
const QString speechFolder = QStringLiteral("/usr/share/pocketsphinx/test/data/librivox/");
const QString speech = speechFolder + QStringLiteral("sense_and_sensibility_01_austen_64kb-0870.wav");

void writeSilence(const QString &path, int seconds)
{
    SF_INFO format = {};
    format.samplerate = 16000;
    format.channels = 1;
    format.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
    SNDFILE *file = sf_open(path.toUtf8().constData(), SFM_WRITE, &format);
    QVERIFY(file != nullptr);
    const std::vector<short> second(16000);
    for (int i = 0; i < seconds; ++i) {
        sf_writef_short(file, second.data(), 16000);
    }
    sf_close(file);
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What PocketSphinx's own program hears in a file, one utterance per line.
QList<QByteArray> heardByPocketSphinx(const QString &path)
{
    RunningProgram engine("pocketsphinx_continuous", {"-infile", path, "-logfn", "/dev/null"});
    engine.waitForEnd();
    QList<QByteArray> lines = engine.outputLines();
    lines.removeAll(QByteArray());
    return lines;
}

/// A word that was shown stays at the beginning of a line, which that program does not know: the first two
/// may differ.
bool isSameButForItsBeginning(const QByteArray &line, const QByteArray &expected)
{
    const QList<QByteArray> words = expected.split(' ');
    return line == expected || (words.size() > 2 && line.endsWith(words.mid(2).join(' ')));
}

} // namespace

class CaptionFileTest : public QObject
{
    Q_OBJECT

    const test::ProgramCopy m_copy {program}; ///< without the network
    QTemporaryDir m_folder;

private slots:
    void theLinesAreWhatIsRead()
    {
#ifdef LUMAPHONE_HAS_ENGLISH_SPEECH
        qsizetype words = 0;
        qsizetype errors = 0;
        for (const test::SpokenRecording &recording : test::debianRecordings(m_folder.path()).recordings) {
            if (recording.set != "librivox") {
                continue;
            }
            RunningProgram captions(program, {"caption", recording.path, "--translate", "off"});
            QVERIFY(captions.waitForEnd());
            QCOMPARE(captions.messages(), QByteArray());
            QCOMPARE(captions.exitCode(), 0);
            const QString heard = QString::fromUtf8(captions.output());
            QVERIFY2(
                heard.trimmed().at(0).isUpper() && heard.trimmed().at(heard.trimmed().size() - 1).isPunct(),
                qPrintable(heard));
            const auto english = AppleSystemSpeechLanguage::english;
            const QStringList spoken = test::spelledWords(recording.transcript, english);
            words += spoken.size();
            errors += test::wordErrors(spoken, test::spelledWords(heard, english));
        }
        QVERIFY(words > 60);
        QVERIFY2(errors <= 4, qPrintable(QString::number(errors)));
#else
        QSKIP("The English network is not installed.");
#endif
    }

    void withoutANetworkTheLinesAreWhatPocketSphinxHears_data()
    {
        QTest::addColumn<QString>("path");
        for (const QString &name : QDir(speechFolder).entryList({"*.wav"})) {
            QTest::newRow(qPrintable(name)) << speechFolder + name;
        }
    }

    void withoutANetworkTheLinesAreWhatPocketSphinxHears()
    {
        QFETCH(QString, path);
        RunningProgram captions(m_copy.program(), {"caption", path, "--translate", "off"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.messages(), QByteArray());
        QCOMPARE(captions.exitCode(), 0);
        const QList<QByteArray> lines = captions.outputLines();
        const QList<QByteArray> expected = heardByPocketSphinx(path);
        QVERIFY(!expected.isEmpty());
        QCOMPARE(lines.size(), expected.size());
        for (qsizetype i = 0; i < lines.size(); ++i) {
            QVERIFY2(isSameButForItsBeginning(lines[i], expected[i]), lines[i]);
        }
    }

    void everyChangeOfALineIsOneObject()
    {
        RunningProgram captions(
            m_copy.program(), {"caption", speech, "--format", "jsonl", "--translate", "off"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
        QHash<QString, std::int64_t> revisions;
        QHash<QString, QString> finalTexts;
        int partials = 0;
        for (const QByteArray &line : captions.outputLines()) {
            const json::Value event = json::parse(line);
            if (json::text(event, "event") == "status") {
                QCOMPARE(json::boolean(event, "isFailure"), false);
                continue;
            }
            QCOMPARE(json::text(event, "event"), QStringLiteral("line"));
            QCOMPARE(json::text(event, "sourceLanguage"), QStringLiteral("english"));
            const QString id = json::text(event, "id");
            QCOMPARE(json::integer(event, "revision"), revisions.value(id) + 1);
            revisions[id] += 1;
            if (json::boolean(event, "isFinal")) {
                finalTexts[id] = json::text(event, "sourceText");
            } else {
                partials += 1;
            }
        }
        QVERIFY(partials > 5);
        QCOMPARE(finalTexts.size(), 1);
        QCOMPARE(revisions.size(), 1);
        QVERIFY(isSameButForItsBeginning(
            finalTexts.values().constFirst().toUtf8(), heardByPocketSphinx(speech).constFirst()));
    }

    void silenceGivesNothing()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("silence.flac");
        writeSilence(path, 600);
        RunningProgram captions(program, {"caption", path, "--translate", "off"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
        QCOMPARE(captions.output(), QByteArray());
        QCOMPARE(captions.messages(), QByteArray());
    }

    void whatIsNoSoundIsSaid_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text") << QStringLiteral("notes.txt") << QByteArray("these are words, not sound\n");
        QTest::newRow("empty") << QStringLiteral("empty.wav") << QByteArray();
        QTest::newRow("a header alone") << QStringLiteral("head.wav") << read(speech).left(20);
        QTest::newRow("a name in Japanese") << QStringLiteral("会議の記録.wav") << QByteArray("RIFF");
    }

    void whatIsNoSoundIsSaid()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        const QTemporaryDir folder;
        const QString path = folder.filePath(name);
        write(path, content);
        RunningProgram captions(program, {"caption", path, "--translate", "off"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        QVERIFY2(captions.messages().contains(name.toUtf8()), captions.messages());
        QCOMPARE(captions.output(), QByteArray());
    }

    void aMissingFileIsSaid()
    {
        RunningProgram captions(program, {"caption", "/nowhere/talk.wav"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        QVERIFY2(captions.messages().contains("/nowhere/talk.wav"), captions.messages());
    }

    void aTruncatedFileIsCaptionedAsFarAsItGoes()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("cut.wav");
        const QByteArray whole = read(speech);
        write(path, whole.left(whole.size() * 3 / 5));
        RunningProgram captions(program, {"caption", path, "--translate", "off"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
        QVERIFY(!captions.outputLines().isEmpty());
    }

    void aLanguageWithoutAModelIsSaid_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QByteArray>("locale");
        QTest::newRow("japanese") << QStringLiteral("japanese") << QByteArray("ja-JP");
        QTest::newRow("korean") << QStringLiteral("korean") << QByteArray("ko-KR");
        QTest::newRow("mandarin") << QStringLiteral("mandarin") << QByteArray("zh-Hant-TW");
    }

    void aLanguageWithoutAModelIsSaid()
    {
        QFETCH(QString, language);
        QFETCH(QByteArray, locale);
        RunningProgram captions(program, {"caption", speech, "--language", language});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        QVERIFY2(captions.messages().contains(locale), captions.messages());
    }

    void anInterruptFinishesTheOpenLine()
    {
        RunningProgram captions(program,
            {"caption", speech, "--realtime", "--format", "jsonl", "--language", "english", "--translate",
                "off"});
        QVERIFY(captions.waitForOutput("\"isFinal\":false"));
        captions.signal(SIGINT);
        QVERIFY(captions.waitForEnd());
        QVERIFY(!captions.crashed());
        QCOMPARE(captions.exitCode(), 0);
        json::Value last;
        for (const QByteArray &line : captions.outputLines()) {
            const json::Value event = json::parse(line);
            last = json::text(event, "event") == "line" ? event : last;
        }
        QCOMPARE(json::boolean(last, "isFinal"), true);
        QVERIFY(!json::text(last, "sourceText").isEmpty());
    }

    void wrongUsageEndsWithTwo_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("unknown command") << QStringList {"listen"};
        QTest::newRow("no input") << QStringList {"caption"};
        QTest::newRow("unknown language") << QStringList {"caption", speech, "--language", "klingon"};
    }

    void wrongUsageEndsWithTwo()
    {
        QFETCH(QStringList, arguments);
        RunningProgram captions(program, arguments);
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 2);
        QVERIFY(!captions.messages().isEmpty());
        QCOMPARE(captions.output(), QByteArray());
    }

    void helpIsForStandardOutput()
    {
        RunningProgram captions(program, {"caption", "--help"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
        QVERIFY(captions.output().startsWith("用法：lumaphone-cli caption INPUT"));
        QCOMPARE(captions.messages(), QByteArray());
    }

    void aLocaleWithoutUnicodeDoesNoHarm()
    {
        RunningProgram captions(program, {"caption", "--help"}, {{"LC_ALL", "C"}});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
        QVERIFY(captions.output().contains("用法"));
        QCOMPARE(captions.messages(), QByteArray());
    }
};

LUMAPHONE_TEST(CaptionFileTest)

} // namespace captionfiletest

#include "CaptionFileTest.moc"
