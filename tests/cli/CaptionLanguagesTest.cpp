#include "base/AtomicFile.h"
#include "base/Json.h"
#include "language/TaiwanWording.h"
#include "models/ModelStore.h"
#include "support/Coroutines.h"
#include "support/PrivateSoundServer.h"
#include "support/RunningProgram.h"
#include "support/ToySpeech.h"
#include "support/ToySpeechModel.h"
#include "support/WavFile.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>

namespace captionlanguagestest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const QString program = QStringLiteral(LUMAPHONE_CLI);

#ifdef LUMAPHONE_HAS_ENGLISH_SPEECH
constexpr bool hasOwnVoiceDetector = true;
#else
constexpr bool hasOwnVoiceDetector = false;
#endif

/// The user's folder of models with the toy networks in it.
class UserWithModels
{
public:
    UserWithModels()
    {
        replaceFile(catalogue(), toySpeechListing(), Durability::renamed);
        installToySpeechModels(ModelStore(m_folder.filePath("Lumaphone/Models"), toySpeechCatalogue()));
    }

    QList<std::pair<QString, QString>> environment() const
    {
        return {{"XDG_DATA_HOME", m_folder.path()}, {"LUMAPHONE_MODEL_CATALOGUE", catalogue()}};
    }

private:
    QString catalogue() const { return m_folder.filePath("catalogue.json"); }

    QTemporaryDir m_folder;
};

struct Line
{
    QString text;
    QString language;
};

/// The final lines in order.
QList<Line> finalLines(RunningProgram &captions)
{
    QStringList ids;
    QHash<QString, Line> lines;
    for (const QByteArray &output : captions.outputLines()) {
        const json::Value event = json::parse(output);
        if (json::text(event, "event") != "line" || !json::boolean(event, "isFinal")) {
            continue;
        }
        const QString id = json::text(event, "id");
        if (!lines.contains(id)) {
            ids.append(id);
        }
        lines[id] = {json::text(event, "sourceText"), json::text(event, "sourceLanguage")};
    }
    QList<Line> inOrder;
    for (const QString &id : ids) {
        inOrder.append(lines[id]);
    }
    return inOrder;
}

QString captionLanguage(const QString &name)
{
    static const QHash<QString, QString> languages {
        {"ja", "japanese"}, {"en", "english"}, {"ko", "korean"}, {"zh", "mandarin"}};
    return languages.value(name);
}

QString captionText(const ToyPhrase &phrase)
{
    static const TaiwanWording wording(WrittenChinese::simplified);
    return phrase.language == "zh" ? wording.rewrite(phrase.text) : phrase.text;
}

void append(std::vector<std::int16_t> &sound, const std::vector<std::int16_t> &part)
{
    sound.insert(sound.end(), part.begin(), part.end());
}

std::vector<std::int16_t> soundOf(const std::vector<ToyPhrase> &phrases)
{
    std::vector<std::int16_t> sound;
    append(sound, silence(0.5));
    for (const ToyPhrase &phrase : phrases) {
        append(sound, speak(phrase));
        append(sound, silence(0.9));
    }
    return sound;
}

/// How many lines are as they were spoken. Lines and phrases are matched in order, so that one that is
/// missing costs one.
struct Score
{
    int spoken = 0;
    int exact = 0;
    int rightLanguage = 0;
};

/// The best alignment of lines to phrases that skips either where it must.
std::vector<std::pair<const ToyPhrase *, const Line *>> aligned(
    const std::vector<ToyPhrase> &phrases, const QList<Line> &lines)
{
    const auto worth = [](const ToyPhrase &phrase, const Line &line) {
        return 1 + 4 * int(captionLanguage(phrase.language) == line.language)
            + 8 * int(captionText(phrase) == line.text);
    };
    const std::size_t columns = std::size_t(lines.size()) + 1;
    std::vector<int> best((phrases.size() + 1) * columns);
    const auto at = [&best, columns](std::size_t i, std::size_t j) -> int & {
        return best[i * columns + j];
    };
    for (std::size_t i = phrases.size(); i-- > 0;) {
        for (std::size_t j = columns - 1; j-- > 0;) {
            at(i, j) = std::max(
                {at(i + 1, j), at(i, j + 1), at(i + 1, j + 1) + worth(phrases[i], lines[qsizetype(j)])});
        }
    }
    std::vector<std::pair<const ToyPhrase *, const Line *>> pairs;
    for (std::size_t i = 0, j = 0; i < phrases.size(); ++i) {
        while (j + 1 < columns && at(i, j) == at(i, j + 1)) {
            ++j;
        }
        const bool isSkipped = j + 1 >= columns || at(i, j) == at(i + 1, j);
        pairs.emplace_back(&phrases[i], isSkipped ? nullptr : &lines[qsizetype(j++)]);
    }
    return pairs;
}

QMap<QString, Score> scores(const std::vector<ToyPhrase> &phrases, const QList<Line> &lines)
{
    QMap<QString, Score> scores;
    for (const auto &[phrase, line] : aligned(phrases, lines)) {
        Score &score = scores[phrase->language];
        ++score.spoken;
        score.exact += line != nullptr && line->text == captionText(*phrase) ? 1 : 0;
        score.rightLanguage += line != nullptr && line->language == captionLanguage(phrase->language) ? 1 : 0;
        if (line == nullptr || line->text != captionText(*phrase)) {
            qInfo("%s: %s heard as %s", qPrintable(phrase->language), qPrintable(captionText(*phrase)),
                line == nullptr ? "nothing" : qPrintable(line->text));
        }
    }
    return scores;
}

QStringList captionCommand(const QString &input)
{
    return {"caption", input, "--language", "automatic", "--format", "jsonl", "--translate", "off"};
}

/// What the system says of a process; empty when it has ended.
QByteArray statusOf(const QString &process)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    return status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
}

bool isSpeechHost(const QByteArray &status)
{
    return status.startsWith("Name:\tlumaphone-speec") && !status.contains("\nState:\tZ");
}

/// The speech hosts that a program has started. Other tests may run hosts of their own.
QStringList hostsOf(const RunningProgram &captions)
{
    const QByteArray parent = "\nPPid:\t" + QByteArray::number(captions.processId()) + '\n';
    QStringList hosts;
    for (const QString &process : QDir("/proc").entryList(QDir::Dirs)) {
        const QByteArray status = statusOf(process);
        if (isSpeechHost(status) && status.contains(parent)) {
            hosts.append(process);
        }
    }
    return hosts;
}

} // namespace

class CaptionLanguagesTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        QVERIFY(waitUntil([this] {
            return std::none_of(m_hosts.begin(), m_hosts.end(),
                [](const QString &host) { return isSpeechHost(statusOf(host)); });
        }));
        m_hosts.clear();
    }

    /// What the computer plays, in four languages by turns, is captioned in its own language and script.
    void fourLanguagesOfTheComputersSoundAreCaptioned()
    {
        const UserWithModels user;
        const std::vector<ToyPhrase> spoken = toyConversation(6);
        const int phraseCount = int(spoken.size());
        PrivateSoundServer server;
        server.addOutput("speakers");
        RunningProgram captions(program, captionCommand("system"), user.environment());
        QVERIFY(waitUntil([&server] { return !server.recordings().empty(); }, 30000));
        const auto playback = server.playSamples(soundOf(spoken), 16000, 1);
        QVERIFY(waitUntil([&playback] { return playback.isFinished(); }, 120000));
        m_hosts = hostsOf(captions);
        QVERIFY(!m_hosts.isEmpty());
        captions.signal(SIGINT);
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);

        int exact = 0;
        int rightLanguage = 0;
        const auto found = scores(spoken, finalLines(captions));
        for (auto score = found.begin(); score != found.end(); ++score) {
            qInfo("%s: %d of %d phrases exact, %d in the right language", qPrintable(score.key()),
                score->exact, score->spoken, score->rightLanguage);
            exact += score->exact;
            rightLanguage += score->rightLanguage;
        }
        // The networks are small; they are asked for most, not for all.
        QVERIFY2(exact * 100 >= 80 * phraseCount, qPrintable(QString::number(exact)));
        QVERIFY2(rightLanguage * 100 >= 90 * phraseCount, qPrintable(QString::number(rightLanguage)));
    }

    void aLanguageWithoutAModelSaysWhatToInstall()
    {
        const QTemporaryDir empty;
        const QTemporaryDir sounds;
        const QString file = sounds.filePath("speech.wav");
        writeWav(file, silence(1));
        RunningProgram captions(program, {"caption", file, "--language", "korean", "--translate", "off"},
            {{"XDG_DATA_HOME", empty.path()}});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        // The program's own voice detector serves every network.
        const QByteArray toInstall = hasOwnVoiceDetector ? "sense-voice」（約 163 MB）。"
                                                         : "silero-vad sense-voice」（約 164 MB）。";
        QVERIFY2(captions.messages().contains(
                     "尚未安裝「韓文」（ko-KR）的語音辨識模型。請在視窗的「離線模型」安裝，或執行"
                     "「lumaphone-cli models install "
                     + toInstall),
            captions.messages());
    }

    void withoutAModelEnglishStillWorks()
    {
        const QTemporaryDir empty;
        RunningProgram captions(program, captionCommand(PrivateSoundServer::speechFiles().constFirst()),
            {{"XDG_DATA_HOME", empty.path()}});
        QVERIFY(captions.waitForEnd(120000));
        QCOMPARE(captions.exitCode(), 0);
        const QList<Line> lines = finalLines(captions);
        QVERIFY(!lines.isEmpty());
        QCOMPARE(lines.constFirst().language, QStringLiteral("english"));
    }

    void theHostDoesNotOutliveAKilledProgram()
    {
        const UserWithModels user;
        PrivateSoundServer server;
        server.addOutput("speakers");
        RunningProgram captions(program, captionCommand("system"), user.environment());
        QVERIFY(waitUntil([&server] { return !server.recordings().empty(); }, 30000));
        QVERIFY(waitUntil([&] {
            m_hosts = hostsOf(captions);
            return !m_hosts.isEmpty();
        }));
        captions.signal(SIGKILL);
        QVERIFY(captions.waitForEnd());
    }

private:
    QStringList m_hosts; ///< started by the test
};

LUMAPHONE_TEST(CaptionLanguagesTest)

} // namespace captionlanguagestest

#include "CaptionLanguagesTest.moc"
