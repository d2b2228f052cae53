#include "speech/pocketsphinx/Listener.h"
#include "speech/pocketsphinx/ModelCopy.h"
#include "support/Coroutines.h"
#include "support/WavFile.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <future>
#include <map>
#include <random>
#include <thread>

namespace pocketsphinxrecognizertest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const auto english = QStringLiteral("en-US");
const auto testData = QStringLiteral("/usr/share/pocketsphinx/test/data/");
constexpr std::size_t sampleRateHz = 16000;
const std::vector<Heard> &heardInFile(const QString &wav)
{
    static std::map<QString, std::vector<Heard>> all;
    const auto [heard, isNew] = all.try_emplace(wav);
    if (isNew) {
        heard->second = heardIn(samplesOfWav(wav));
    }
    return heard->second;
}

/// What the decoder's own program prints for a file.
QStringList reference(const QString &wav)
{
    QProcess process;
    process.start(QStringLiteral("pocketsphinx_continuous"),
        {QStringLiteral("-infile"), wav, QStringLiteral("-logfn"), QStringLiteral("/dev/null")},
        QIODevice::ReadOnly);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        qFatal("pocketsphinx_continuous failed");
    }
    QStringList lines
        = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines;
}

/// Whether lines are what the decoder's own program prints. It shows nothing before the end of an utterance;
/// here the word that was shown first stays, so that the first two may be others.
bool isHeardAs(const QStringList &heard, const QStringList &expected)
{
    return std::equal(heard.begin(), heard.end(), expected.begin(), expected.end(),
        [](const QString &line, const QString &other) {
            const QStringList words = other.split(QLatin1Char(' '));
            return line == other || (words.size() > 2 && line.endsWith(words.mid(2).join(QLatin1Char(' '))));
        });
}

QStringList recordings()
{
    QStringList paths;
    for (const char *set : {"librivox", "cards"}) {
        const QDir folder(testData + QString::fromLatin1(set));
        for (const QString &name : folder.entryList({QStringLiteral("*.wav")}, QDir::Files, QDir::Name)) {
            paths.append(folder.filePath(name));
        }
    }
    return paths;
}

QStringList finalsOfOwnRecognizer(const QString &path)
{
    Listener listener;
    listener.give(samplesOfWav(path));
    listener.finish();
    return finalsOf(listener.heard());
}

Samples append(Samples first, const Samples &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// Someone reading, without the pauses.
Samples speechWithoutPauses(std::size_t seconds)
{
    Samples speech;
    for (const QString &path : recordings().first(5)) {
        const Samples samples = samplesOfWav(path);
        constexpr std::size_t window = 320;
        for (std::size_t at = 0; at + window <= samples.size(); at += window) {
            const auto piece = std::span(samples).subspan(at, window);
            const bool isLoud
                = std::any_of(piece.begin(), piece.end(), [](int value) { return value > 400; });
            if (isLoud) {
                speech.insert(speech.end(), piece.begin(), piece.end());
            }
        }
    }
    while (speech.size() < seconds * sampleRateHz) {
        speech = append(speech, speech);
    }
    speech.resize(seconds * sampleRateHz);
    return speech;
}

Samples whiteNoise(double seconds, double amplitude)
{
    std::mt19937 random(1);
    std::normal_distribution<double> level(0, amplitude);
    Samples noise(std::size_t(seconds * double(sampleRateHz)));
    std::generate(noise.begin(), noise.end(),
        [&] { return std::int16_t(std::clamp(level(random), -32768.0, 32767.0)); });
    return noise;
}

/// Noise whose power falls by 3 dB an octave, after Paul Kellet's filter.
Samples pink(const Samples &white)
{
    Samples noise;
    double slow = 0;
    double middle = 0;
    double quick = 0;
    for (const std::int16_t sample : white) {
        slow = 0.99765 * slow + 0.0990460 * sample;
        middle = 0.96300 * middle + 0.2965164 * sample;
        quick = 0.57000 * quick + 1.0526913 * sample;
        noise.push_back(
            std::int16_t(std::clamp((slow + middle + quick + 0.1848 * sample) / 4, -32768.0, 32767.0)));
    }
    return noise;
}

} // namespace

class PocketSphinxRecognizerTest : public QObject
{
    Q_OBJECT

    QString m_sentence = testData + QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0880.wav");
    QString m_longSentence
        = testData + QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0870.wav");

private slots:
    // First: everything below shows that the process survived it.
    void aBrokenModelIsAnErrorAndNoMore_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("permille");
        for (const QString &file : ModelCopy::files()) {
            for (const int permille : {0, 2, 500, 999}) {
                QTest::addRow("%s at %d permille", qPrintable(file), permille) << file << permille;
            }
        }
    }

    void aBrokenModelIsAnErrorAndNoMore()
    {
        QFETCH(QString, file);
        QFETCH(int, permille);
        const ModelCopy copy;
        copy.truncate(file, copy.size(file) * permille / 1000);
        const auto error
            = thrownBy<SpeechFrameworkError>([&] { Listener listener(PocketSphinxEngine(copy.path())); });
        QVERIFY(error);
        QVERIFY2(error->errorDescription().contains(copy.path()), qPrintable(error->errorDescription()));
    }

    void aRecordingIsHeardAsTheDecodersOwnProgramHearsIt_data()
    {
        QTest::addColumn<QString>("path");
        const QStringList paths = recordings();
        QCOMPARE(paths.size(), 10);
        for (const QString &path : paths) {
            QTest::newRow(qPrintable(path.section(QLatin1Char('/'), -2))) << path;
        }
    }

    void aRecordingIsHeardAsTheDecodersOwnProgramHearsIt()
    {
        QFETCH(QString, path);
        const QStringList expected = reference(path);
        QVERIFY(!expected.isEmpty());
        QVERIFY(isHeardAs(finalsOf(heardInFile(path)), expected));
    }

    void severalUtterancesAreHeardAsTheDecodersOwnProgramHearsThem()
    {
        Samples samples;
        for (const QString &path : recordings().last(4)) {
            samples = append(append(samples, samplesOfWav(path)), Samples(sampleRateHz * 2));
        }
        const QTemporaryDir folder;
        const QString wav = folder.filePath(QStringLiteral("several.wav"));
        writeWav(wav, samples);
        const QStringList expected = reference(wav);
        QVERIFY(expected.size() >= 4);
        QVERIFY(isHeardAs(finalsOf(heardIn(samples)), expected));
    }

    void theSizeOfPiecesDoesNotMatter_data()
    {
        QTest::addColumn<int>("frames");
        QTest::newRow("odd and small") << 7;
        QTest::newRow("odd") << 1021;
        QTest::newRow("a block and one") << 2049;
        QTest::newRow("everything at once") << 10'000'000;
    }

    void theSizeOfPiecesDoesNotMatter()
    {
        QFETCH(int, frames);
        static const QStringList expected = finalsOf(heardInFile(m_sentence));
        QVERIFY(!expected.isEmpty());
        QCOMPARE(finalsOf(heardIn(samplesOfWav(m_sentence), std::size_t(frames))), expected);
    }

    void volatileTextsGrowIntoTheFinalOne_data() { aRecordingIsHeardAsTheDecodersOwnProgramHearsIt_data(); }
    void volatileTextsGrowIntoTheFinalOne()
    {
        QFETCH(QString, path);
        const std::vector<Heard> &all = heardInFile(path);
        QString shown;
        for (const Heard &heard : all) {
            const QString text = heard.result.text;
            QVERIFY2(text.startsWith(shown) || shown.startsWith(text), qPrintable(shown + " -> " + text));
            shown = heard.result.isFinal ? QString() : text;
        }
        QCOMPARE(finalsOf(all).size(), 1);
    }

    void volatileTextsComeWhileSomeoneSpeaks()
    {
        const std::vector<Heard> heard = heardIn(samplesOfWav(
            testData + QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0920.wav")));
        QVERIFY(heard.size() > 8);
        QVERIFY(heard.back().result.isFinal);
        // The first words, soon after the beginning of speech.
        QVERIFY(!heard.front().result.isFinal);
        QVERIFY(heard.front().samplesGiven < sampleRateHz * 5 / 2);
    }

    void textsAreTrimmedWordsInLowerCase()
    {
        const std::vector<Heard> &all = heardInFile(m_sentence);
        QVERIFY(!all.empty());
        static const QRegularExpression words(QStringLiteral("^[a-z'.-]+( [a-z'.-]+)*$"));
        for (const Heard &heard : all) {
            QVERIFY2(words.match(heard.result.text).hasMatch(), qPrintable(heard.result.text));
        }
    }

    void anUtteranceLastsTwentySecondsAtMost()
    {
        const Samples speech = speechWithoutPauses(24);
        const std::vector<Heard> all = heardIn(speech);
        std::size_t utteranceBegan = 0;
        for (const Heard &heard : all) {
            QVERIFY(heard.samplesGiven - utteranceBegan <= 20 * sampleRateHz);
            if (heard.result.isFinal) {
                utteranceBegan = heard.samplesGiven;
            }
        }
        QVERIFY(finalsOf(all).size() >= 2);
        QVERIFY(all.front().samplesGiven < sampleRateHz * 3);
        QVERIFY(utteranceBegan > speech.size() - sampleRateHz);
    }

    void silenceSaysNothing() { QVERIFY(heardIn(Samples(3 * 60 * sampleRateHz)).empty()); }

    void silenceBeforeSpeechChangesNothing()
    {
        // Whole blocks, so that the decoder sees the speech cut up in the same way.
        const Samples silence(2048 * 200);
        const Samples samples = append(silence, samplesOfWav(m_sentence));
        const QTemporaryDir folder;
        const QString wav = folder.filePath(QStringLiteral("late.wav"));
        writeWav(wav, samples);
        QVERIFY(isHeardAs(finalsOf(heardIn(samples)), reference(wav)));
    }

    void noiseSaysNothing_data()
    {
        QTest::addColumn<double>("amplitude");
        QTest::addColumn<bool>("isPink");
        QTest::newRow("faint") << 3.0 << false;
        QTest::newRow("loud") << 3000.0 << false;
        QTest::newRow("clipping") << 40000.0 << false;
        QTest::newRow("pink") << 3000.0 << true;
        QTest::newRow("faint and pink") << 300.0 << true;
    }

    void noiseSaysNothing()
    {
        QFETCH(double, amplitude);
        QFETCH(bool, isPink);
        const Samples noise = whiteNoise(20, amplitude);
        const std::vector<Heard> all = heardIn(append(isPink ? pink(noise) : noise, Samples(sampleRateHz)));
        QVERIFY2(all.empty(), qPrintable(finalsOf(all).join('|')));
    }

    void finishingWithoutSoundSaysNothing() { QVERIFY(heardIn({}).empty()); }

    void finishingInTheMiddleOfASentenceClosesIt()
    {
        const Samples samples = samplesOfWav(m_longSentence);
        Listener listener;
        listener.give(std::span(samples).first(samples.size() / 2));
        QVERIFY(!listener.heard().empty() && !listener.heard().back().result.isFinal);
        listener.finish();
        QCOMPARE(finalsOf(listener.heard()).size(), 1);
        QVERIFY(listener.heard().back().result.isFinal);
    }

    void afterCancellingNothingIsSaid()
    {
        const Samples samples = samplesOfWav(m_longSentence);
        Listener listener;
        listener.give(std::span(samples).first(samples.size() / 2));
        const std::size_t said = listener.heard().size();
        QVERIFY(said > 0);
        listener.recognizer().cancel();
        listener.recognizer().cancel();
        listener.give(std::span(samples).subspan(samples.size() / 2));
        listener.finish();
        QCOMPARE(listener.heard().size(), said);
    }

    void cancellingFromAnotherThreadEndsARunningCall()
    {
        // An hour of speech in one call: without the cancellation it would last for many minutes.
        Samples hour;
        const Samples sentence = samplesOfWav(m_sentence);
        while (hour.size() < 3600 * sampleRateHz) {
            hour = hour.empty() ? sentence : append(hour, hour);
        }
        std::promise<void> firstText;
        std::once_flag isFirst;
        const PocketSphinxEngine engine;
        const auto recognizer = engine
                                    .makeRecognizers({english},
                                        [&](const QString &, const SpeechResult &) {
                                            std::call_once(isFirst, [&firstText] { firstText.set_value(); });
                                        })
                                    .front();
        recognizer->load();
        auto running = std::async(std::launch::async, [&] {
            recognizer->accept(hour);
            recognizer->finish();
        });
        firstText.get_future().wait();
        recognizer->cancel();
        QCOMPARE(running.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    }

    void twoRecognizersWorkAtOnce()
    {
        const QString otherPath = testData + QStringLiteral("cards/005.wav");
        auto other = std::async(std::launch::async, finalsOfOwnRecognizer, otherPath);
        const QStringList finals = finalsOfOwnRecognizer(m_sentence);
        const QStringList otherFinals = other.get();
        QVERIFY(isHeardAs(finals, reference(m_sentence)));
        QVERIFY(isHeardAs(otherFinals, reference(otherPath)));
    }

    void nothingIsWrittenToTheTerminal()
    {
        QProcess self;
        self.start(QCoreApplication::applicationFilePath(),
            {QStringLiteral("PocketSphinxRecognizerTest"), QStringLiteral("-silent"),
                QStringLiteral("finishingInTheMiddleOfASentenceClosesIt")});
        QVERIFY(self.waitForFinished(60000));
        QCOMPARE(self.exitCode(), 0);
        QCOMPARE(QString::fromUtf8(self.readAllStandardError()), QString());
        QVERIFY(!self.readAllStandardOutput().contains("-hmm"));
    }
};

LUMAPHONE_TEST(PocketSphinxRecognizerTest)

} // namespace pocketsphinxrecognizertest

#include "PocketSphinxRecognizerTest.moc"
