#include "speech/host/HostedSpeech.h"
#include "speech/hosted/SpeechModelFiles.h"
#include "support/FolderResources.h"
#include "support/program/TestProgram.h"
#include "support/speech-scores/SpokenRecordings.h"
#include "support/speech-scores/WordSpelling.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <random>
#include <thread>

namespace englishnetworktest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

using Samples = std::vector<std::int16_t>;

QString bundled(const QString &name)
{
    return QStringLiteral(LUMAPHONE_SPEECH_RUNTIME "/english-speech/") + name;
}

SpeechInstallation installation()
{
    return {QStringLiteral(LUMAPHONE_SPEECH_HOST), QStringLiteral(LUMAPHONE_SPEECH_RUNTIME),
        bundled("voice-detector.onnx"),
        {host::NetworkKind::moonshine,
            {encodedPath(bundled("encoder.onnx")), encodedPath(bundled("decoder.onnx"))},
            encodedPath(bundled("tokens.txt"))},
        {}, {}, SpeechHostSession::reinstallTheModel(), 400};
}

std::vector<Heard> hear(const SpeechInstallation &installed, const Samples &samples)
{
    HeardTexts heard;
    HostedRecognizer recognizer(installed, {SpokenLanguage::english}, heard.sink());
    recognizer.load();
    feed(recognizer, samples);
    recognizer.finish();
    return heard.all();
}

QStringList finalsOf(const std::vector<Heard> &heard)
{
    QStringList finals;
    for (const Heard &each : heard) {
        if (each.isFinal) {
            finals.append(each.text);
        }
    }
    return finals;
}

QString errorWith(const SpeechInstallation &broken)
{
    return test::errorWith(broken, {SpokenLanguage::english}, Samples(16000));
}

void put(SpeechInstallation &installed, const QString &name, const QString &path)
{
    if (name == "voice-detector.onnx") {
        installed.voiceDetector = path;
    } else if (name == "tokens.txt") {
        installed.network.tokens = encodedPath(path);
    } else {
        installed.network.files[name == "encoder.onnx" ? 0 : 1] = encodedPath(path);
    }
}

/// Sounds that nobody speaks, at the loudness of speech.
class Noises
{
public:
    Samples white(double seconds)
    {
        return made(seconds, [this] { return 0.05 * uniform(); });
    }
    Samples rumble(double seconds)
    {
        double slow = 0;
        return made(seconds, [this, &slow] { return slow = 0.99 * slow + 0.02 * uniform(); });
    }
    /// Chords of plucked strings.
    Samples chords(double seconds)
    {
        std::size_t at = 0;
        double root = 0;
        return made(seconds, [this, &at, &root] {
            if (at % 6000 == 0) {
                root = 110 * std::pow(2, std::round(6 + 6 * uniform()) / 12);
            }
            const double time = double(at++ % 6000) / 16000;
            double sum = 0;
            for (const double interval : {1.0, 1.25, 1.5}) {
                for (const int overtone : {1, 2, 3}) {
                    sum += std::sin(2 * M_PI * root * interval * overtone * time) / overtone;
                }
            }
            return 0.08 * std::exp(-4 * time) * sum;
        });
    }
    /// Keys that are struck.
    Samples keys(double seconds)
    {
        std::size_t since = 0;
        std::size_t next = 0;
        return made(seconds, [this, &since, &next] {
            if (next-- == 0) {
                since = 0;
                next = 1500 + std::size_t(2500 * (1 + uniform()));
            }
            return 0.3 * std::exp(-double(since++) / 120) * uniform();
        });
    }
    Samples breath(double seconds)
    {
        std::size_t at = 0;
        double slow = 0;
        return made(seconds, [this, &at, &slow] {
            slow = 0.7 * slow + 0.3 * uniform();
            return 0.1 * std::max(0.0, std::sin(2 * M_PI * double(at++) / 40000)) * slow;
        });
    }
    Samples applause(double seconds)
    {
        std::vector<double> claps(40, 1e9);
        return made(seconds, [this, &claps] {
            double sum = 0;
            for (double &since : claps) {
                if (uniform() > 0.9995) {
                    since = 0;
                }
                sum += 0.05 * std::exp(-since++ / 150) * uniform();
            }
            return sum;
        });
    }

private:
    double uniform() { return m_uniform(m_random); }
    static Samples made(double seconds, const auto &next)
    {
        Samples samples(std::size_t(seconds * 16000));
        for (std::int16_t &sample : samples) {
            sample = std::int16_t(std::clamp(next() * 32767, -32768.0, 32767.0));
        }
        return samples;
    }

    std::mt19937 m_random {5};
    std::uniform_real_distribution<double> m_uniform {-1, 1};
};

} // namespace

class EnglishNetworkTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private slots:
    /// Of a hundred words, so many wrong ones, where the network alone has three and eleven.
    void humanSpeechIsHeard_data()
    {
        QTest::addColumn<QString>("set");
        QTest::addColumn<int>("words");
        QTest::addColumn<int>("mostErrors");
        QTest::newRow("read aloud") << "librivox" << 71 << 4;
        QTest::newRow("playing cards") << "cards" << 21 << 4;
    }
    void humanSpeechIsHeard()
    {
        QFETCH(QString, set);
        QFETCH(int, words);
        QFETCH(int, mostErrors);
        qsizetype spoken = 0;
        qsizetype errors = 0;
        const SpokenRecordings speech = debianRecordings(m_folder.path());
        for (const SpokenRecording &recording : speech.recordings) {
            if (recording.set == set) {
                const QStringList finals = finalsOf(hear(installation(), recording.samples));
                QVERIFY2(!finals.isEmpty(), qPrintable(recording.path));
                const QString text = finals.join(' ');
                QVERIFY2(text.at(0).isUpper(), qPrintable(text));
                const QStringList transcript = spelledWords(recording.transcript, speech.language);
                spoken += transcript.size();
                errors += wordErrors(transcript, spelledWords(text, speech.language));
            }
        }
        QVERIFY2(spoken >= words, qPrintable(QString::number(spoken)));
        QVERIFY2(errors <= mostErrors, qPrintable(QString::number(errors)));
    }

    /// At the speed of sound, so that there is time for volatile texts.
    void textsOnlyGrow()
    {
        const auto recordings = debianRecordings(m_folder.path()).recordings;
        HeardTexts heard;
        HostedRecognizer recognizer(installation(), {SpokenLanguage::english}, heard.sink());
        recognizer.load();
        auto next = std::chrono::steady_clock::now();
        for (const SpokenRecording &recording : recordings) {
            Samples samples = recording.samples;
            samples.resize(samples.size() + 16000);
            constexpr std::size_t piece = 1600;
            for (std::size_t at = 0; at < samples.size(); at += piece) {
                recognizer.accept(std::span(samples).subspan(at, std::min(piece, samples.size() - at)));
                next += std::chrono::milliseconds(100);
                std::this_thread::sleep_until(next);
            }
        }
        recognizer.finish();
        QString shown;
        for (const Heard &each : heard.all()) {
            const QString text = each.text.toLower();
            QVERIFY2(text.startsWith(shown) || shown.startsWith(text), qPrintable(shown + " -> " + text));
            shown = each.isFinal ? QString() : text;
        }
        QVERIFY2(shown.isEmpty(), "a line was given up");
        const QStringList finals = finalsOf(heard.finals());
        QVERIFY2(finals.size() >= qsizetype(recordings.size()), qPrintable(finals.join('|')));
    }

    void aQuietPhraseBetweenTwoPausesIsHeard()
    {
        Samples samples;
        const auto recordings = debianRecordings(m_folder.path()).recordings;
        const auto phrase = std::find_if(recordings.begin(), recordings.end(),
            [](const SpokenRecording &recording) { return recording.path.endsWith("cards/001.wav"); });
        QVERIFY(phrase != recordings.end());
        samples.resize(16000);
        for (const std::int16_t sample : phrase->samples) {
            samples.push_back(std::int16_t(sample / 16));
        }
        samples.resize(samples.size() + 16000);
        const QStringList finals = finalsOf(hear(installation(), samples));
        QCOMPARE(spelledWords(finals.join(' '), AppleSystemSpeechLanguage::english),
            (QStringList {"ten", "of", "clubs"}));
    }

    void whatNobodySpeaksSaysNothing_data()
    {
        QTest::addColumn<Samples>("samples");
        Noises noises;
        QTest::newRow("silence") << Samples(30 * 16000);
        QTest::newRow("white noise") << noises.white(30);
        QTest::newRow("rumble") << noises.rumble(30);
        QTest::newRow("chords") << noises.chords(30);
        QTest::newRow("keys") << noises.keys(30);
        QTest::newRow("breath") << noises.breath(30);
        QTest::newRow("applause") << noises.applause(30);
    }
    void whatNobodySpeaksSaysNothing()
    {
        QFETCH(Samples, samples);
        const auto heard = hear(installation(), samples);
        QVERIFY2(heard.empty(), heard.empty() ? "" : qPrintable(heard.front().text));
    }

    void missingFilesAreTold_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *const name : {"encoder.onnx", "decoder.onnx", "tokens.txt", "voice-detector.onnx"}) {
            QTest::newRow(name) << name;
        }
    }
    void missingFilesAreTold()
    {
        QFETCH(QString, name);
        SpeechInstallation broken = installation();
        broken.repair = QStringLiteral("請重新安裝 Lumaphone。");
        put(broken, name, "/nowhere/file");
        const QString error = errorWith(broken);
        QVERIFY2(error.contains("請重新安裝 Lumaphone。"), qPrintable(error));
    }

    void damagedFilesAreToldAndTheProgramLives_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        for (const char *const name : {"encoder.onnx", "decoder.onnx", "voice-detector.onnx"}) {
            const QByteArray whole = contents(bundled(name));
            QTest::addRow("%s, empty", name) << name << QByteArray();
            QTest::addRow("%s, cut off", name) << name << whole.left(whole.size() / 2);
            QTest::addRow("%s, a page of the web", name) << name << QByteArray("<html>not found</html>");
        }
        QTest::newRow("another network's words") << "tokens.txt" << contents(toySpeechFile("tokens.txt"));
    }
    void damagedFilesAreToldAndTheProgramLives()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        const QTemporaryDir folder;
        const QString path = folder.filePath("檔案");
        write(path, bytes);
        SpeechInstallation broken = installation();
        put(broken, name, path);
        const QString error = errorWith(broken);
        QVERIFY2(error.contains("請移除後重新安裝。"), qPrintable(error));
    }

    void anOlderLibraryIsRefused()
    {
        SpeechInstallation old = installation();
        old.runtimeFolder = QStringLiteral(LUMAPHONE_TEST_RUNTIMES "/old-runtime");
        const QString error = errorWith(old);
        QVERIFY2(error.startsWith("語音辨識執行庫的版本 1.12.34 太舊"), qPrintable(error));
    }

    /// The library says nothing of many a change, and hears nothing then: files are compared before it sees
    /// them.
    void whatTheLibraryWouldNotNoticeIsTold_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *const name : {"encoder.onnx", "decoder.onnx", "tokens.txt", "voice-detector.onnx"}) {
            QTest::newRow(name) << name;
        }
    }
    void whatTheLibraryWouldNotNoticeIsTold()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        const QDir copy(folder.filePath("english-speech"));
        QVERIFY(QDir().mkpath(copy.path()));
        for (const QString &file : QDir(bundled(QString())).entryList(QDir::Files)) {
            QVERIFY(QFile::copy(bundled(file), copy.filePath(file)));
        }
        const ModelStore store(folder.filePath("models"), ModelCatalogue::builtIn(),
            std::make_shared<FolderResources>(folder.path()));
        CheckedFiles checked(folder.filePath("checked.json"));
        auto files = bundledEnglishModel(store, checked);
        QVERIFY(std::holds_alternative<SpeechModelFiles>(files));
        SpeechInstallation copied = installation();
        copied.demandIntact = std::get<SpeechModelFiles>(files).demandIntact;
        copied.repair = std::get<SpeechModelFiles>(files).repair;
        QCOMPARE(errorWith(copied), QString());

        QFile changed(copy.filePath(name));
        QVERIFY(changed.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(changed.open(QIODevice::ReadWrite));
        QVERIFY(changed.seek(changed.size() / 2));
        const char byte = changed.read(1).at(0);
        QVERIFY(changed.seek(changed.size() / 2));
        QCOMPARE(changed.write(QByteArray(1, char(~byte))), qint64(1));
        changed.close();
        const QString error = errorWith(copied);
        QVERIFY2(error.contains(name) && error.contains("請重新安裝 Lumaphone。"), qPrintable(error));

        QVERIFY(changed.resize(1000));
        QVERIFY(std::get<QString>(bundledEnglishModel(store, checked)).contains("不完整"));
    }
};

LUMAPHONE_TEST(EnglishNetworkTest)

} // namespace englishnetworktest

#include "EnglishNetworkTest.moc"
