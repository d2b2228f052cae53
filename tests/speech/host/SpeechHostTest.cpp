#include "language/TaiwanWording.h"
#include "speech/host/HostedSpeech.h"
#include "speech/host/Segmenter.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>

namespace speechhosttest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

SpeechInstallation installation()
{
    return toyInstallation(QStringLiteral(LUMAPHONE_SPEECH_HOST), QStringLiteral(LUMAPHONE_SPEECH_RUNTIME));
}

const std::vector<SpokenLanguage> all {
    SpokenLanguage::japanese, SpokenLanguage::english, SpokenLanguage::korean, SpokenLanguage::mandarin};

/// One phrase of each language.
std::vector<ToyPhrase> fourPhrases()
{
    std::vector<ToyPhrase> chosen;
    for (const ToyPhrase &phrase : toyPhrases()) {
        if (chosen.empty() || chosen.back().language != phrase.language) {
            chosen.push_back(phrase);
        }
    }
    return chosen;
}

Heard finalOf(const ToyPhrase &phrase)
{
    const auto language = *spokenLanguageNamed(phrase.language);
    const QString text = language == SpokenLanguage::mandarin
        ? TaiwanWording(WrittenChinese::simplified).rewrite(phrase.text)
        : phrase.text;
    return {localeIdentifier(language), text, true};
}

std::vector<std::int16_t> spokenWithPauses(const std::vector<ToyPhrase> &phrases)
{
    std::vector<std::int16_t> sound = silence(0.7);
    for (const ToyPhrase &phrase : phrases) {
        for (const auto &part : {speak(phrase), silence(0.9)}) {
            sound.insert(sound.end(), part.begin(), part.end());
        }
    }
    return sound;
}

/// Feeds at the speed of sound, so that volatile texts have their time.
void feedAsItIsSpoken(StreamingRecognizer &recognizer, std::span<const std::int16_t> samples)
{
    constexpr std::size_t piece = 320;
    auto next = std::chrono::steady_clock::now();
    while (!samples.empty()) {
        const std::size_t count = std::min(piece, samples.size());
        recognizer.accept(samples.first(count));
        samples = samples.subspan(count);
        next += std::chrono::milliseconds(20);
        std::this_thread::sleep_until(next);
    }
}

/// Whether it hears each of four sentences in four languages as what it is.
bool tellsFourApart(const SpeechInstallation &installed)
{
    HeardTexts heard;
    HostedRecognizer recognizer(installed, all, heard.sink());
    recognizer.load();
    std::vector<Heard> expected;
    for (const ToyPhrase &phrase : fourPhrases()) {
        expected.push_back(finalOf(phrase));
    }
    feed(recognizer, spokenWithPauses(fourPhrases()));
    recognizer.finish();
    return heard.finals() == expected;
}

} // namespace

class SpeechHostTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        // Neither a host nor what is left of one.
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
        QCOMPARE(errno, ECHILD);
    }

    void fourLanguagesAreToldApart() { QVERIFY(tellsFourApart(installation())); }

    void aSingleLanguageIsNeverLeft()
    {
        HeardTexts heard;
        HostedRecognizer recognizer(installation(), {SpokenLanguage::korean}, heard.sink());
        recognizer.load();
        feed(recognizer, spokenWithPauses(fourPhrases()));
        recognizer.finish();
        const auto texts = heard.all();
        QVERIFY(texts.size() >= 4);
        QVERIFY(std::all_of(
            texts.begin(), texts.end(), [](const Heard &text) { return text.locale == "ko-KR"; }));
    }

    void volatileTextsComeWhileOneSpeaks_data()
    {
        QTest::addColumn<bool>("hasStreamingNetwork");
        QTest::newRow("from the network of the final texts") << false;
        QTest::newRow("from a streaming network") << true;
    }
    void volatileTextsComeWhileOneSpeaks()
    {
        QFETCH(const bool, hasStreamingNetwork);
        SpeechInstallation installed = installation();
        if (hasStreamingNetwork) {
            installed.volatileNetwork = toyStreamingNetwork();
        }
        HeardTexts heard;
        HostedRecognizer recognizer(installed, {SpokenLanguage::english}, heard.sink());
        recognizer.load();
        const ToyPhrase phrase = fourPhrases().at(1);
        feedAsItIsSpoken(recognizer, spokenWithPauses({phrase}));
        recognizer.finish();
        const auto texts = heard.all();
        QVERIFY(texts.size() >= 2);
        QVERIFY(!texts.front().isFinal);
        QVERIFY2(phrase.text.startsWith(texts.front().text), qPrintable(texts.front().text));
        QVERIFY(texts.back() == finalOf(phrase));
    }

    void aStreamingNetworkAloneServesAllTexts()
    {
        SpeechInstallation streaming = installation();
        streaming.network = toyStreamingNetwork();
        QVERIFY(tellsFourApart(streaming));
    }

    void theEndOfTheSoundEndsTheSentence()
    {
        HeardTexts heard;
        HostedRecognizer recognizer(installation(), all, heard.sink());
        recognizer.load();
        feed(recognizer, speak(fourPhrases().front()));
        recognizer.finish();
        QVERIFY(heard.finals() == std::vector<Heard> {finalOf(fourPhrases().front())});
    }

    void withoutSoundThereIsNoText()
    {
        HeardTexts heard;
        HostedRecognizer recognizer(installation(), all, heard.sink());
        recognizer.load();
        recognizer.finish();
        QVERIFY(heard.all().empty());
    }

    void aHostKilledWhileOneSpeaksLosesNothing()
    {
        const ToyPhrase phrase = fourPhrases().front();
        const auto sound = spokenWithPauses({phrase});
        HeardTexts heard;
        HostedRecognizer recognizer(installation(), all, heard.sink());
        recognizer.load();
        const auto half = std::span(sound).first(sound.size() / 2);
        feed(recognizer, half);
        ::kill(recognizer.hostProcessId(), SIGKILL);
        feed(recognizer, std::span(sound).subspan(half.size()));
        recognizer.finish();
        QVERIFY(heard.finals() == std::vector<Heard> {finalOf(phrase)});
    }
};

LUMAPHONE_TEST(SpeechHostTest)

} // namespace speechhosttest

#include "SpeechHostTest.moc"
