#include "language/TaiwanWording.h"
#include "speech/framework/RecognizedText.h"
#include "speech/host/HostedSpeech.h"
#include "speech/host/Segmenter.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <cmath>
#include <csignal>
#include <numbers>
#include <random>
#include <utility>

namespace speechhostendurancetest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

constexpr int rateHz = 16000;
constexpr int minutes = 10;
constexpr std::size_t tenMinutes = std::size_t {minutes} * 60 * rateHz;

const std::vector<SpokenLanguage> all {
    SpokenLanguage::japanese, SpokenLanguage::english, SpokenLanguage::korean, SpokenLanguage::mandarin};

SpeechInstallation installation()
{
    return toyInstallation(QStringLiteral(LUMAPHONE_SPEECH_HOST), QStringLiteral(LUMAPHONE_SPEECH_RUNTIME));
}

std::int16_t sampleOf(double value)
{
    return static_cast<std::int16_t>(std::clamp(value, -1.0, 1.0) * 32767);
}

using Sound = std::function<std::int16_t(std::size_t)>;

Sound whiteNoise(double level)
{
    return
        [level, random = std::mt19937(1), normal = std::normal_distribution<double>()](std::size_t) mutable {
            return sampleOf(level * normal(random));
        };
}

/// Filtered so that every octave is equally loud, roughly.
Sound pinkNoise(double level)
{
    return [level, random = std::mt19937(2), normal = std::normal_distribution<double>(),
               b = std::array<double, 3> {}](std::size_t) mutable {
        const double white = normal(random);
        b[0] = 0.99765 * b[0] + white * 0.0990460;
        b[1] = 0.96300 * b[1] + white * 0.2965164;
        b[2] = 0.57000 * b[2] + white * 1.0526913;
        return sampleOf(level * (b[0] + b[1] + b[2] + white * 0.1848));
    };
}

/// Four chords in turn, half a second each, that fade as plucked strings do.
Sound chords(double level)
{
    return [level](std::size_t index) {
        constexpr std::size_t chord = rateHz / 2;
        static constexpr std::array<std::array<double, 3>, 4> notes {{{261.63, 329.63, 392.00},
            {220.00, 261.63, 329.63}, {174.61, 220.00, 261.63}, {196.00, 246.94, 293.66}}};
        const double time = double(index % chord) / rateHz;
        double value = 0;
        for (const double frequency : notes[index / chord % notes.size()]) {
            for (int harmonic = 1; harmonic <= 4; ++harmonic) {
                value
                    += std::sin(2 * std::numbers::pi * frequency * harmonic * time) / std::pow(harmonic, 1.5);
            }
        }
        return sampleOf(level * value * std::exp(-1.5 * time));
    };
}

double between(std::mt19937 &random, double least, double most)
{
    return std::uniform_real_distribution(least, most)(random);
}

/// A plucked note or two, a beep, a glide or a knock.
std::vector<std::int16_t> shortSound(std::mt19937 &random, double level)
{
    enum Kind { note, twoNotes, beep, glide, knock };
    const auto kind = static_cast<Kind>(random() % 5);
    const std::array<double, 2> pitches {110 * std::pow(2, double(random() % 36) / 12),
        kind == twoNotes ? 110 * std::pow(2, double(random() % 36) / 12) : 0};
    const double fading = kind == beep || kind == glide ? 0 : between(random, 2, 10);
    const double gliding = kind == glide ? between(random, -1, 1.5) : 0;
    const int harmonics = kind == beep ? 1 : 6;
    std::normal_distribution<double> normal;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(between(random, 0.1, 0.7) * rateHz));
    double turn = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = double(i) / rateHz;
        turn += 2 * std::numbers::pi * (1 + gliding * time) / rateHz;
        double value = kind == knock ? normal(random) : 0;
        for (int harmonic = 1; harmonic <= harmonics && kind != knock; ++harmonic) {
            for (const double pitch : pitches) {
                value += std::sin(turn * pitch * harmonic) / std::pow(harmonic, 1.5);
            }
        }
        const double rest = double(samples.size() - i) / rateHz;
        const double swell = std::min({1.0, time / 0.005, rest / 0.01});
        samples[i] = sampleOf(level * value * swell * std::exp(-fading * time));
    }
    return samples;
}

/// Short sounds, with rests or without.
Sound shortSounds(double level)
{
    return [level, random = std::mt19937(3), sound = std::vector<std::int16_t>(), at = std::size_t {}](
               std::size_t) mutable {
        if (at == sound.size()) {
            sound = shortSound(random, level * between(random, 0.3, 1));
            const double rest = std::max(0.0, between(random, -0.3, 0.9));
            sound.resize(sound.size() + static_cast<std::size_t>(rest * rateHz));
            at = 0;
        }
        return sound[at++];
    };
}

/// What the host hears, with its times.
class Listening
{
public:
    Listening()
        : m_session(installation().hostProgram, configuration(),
            [this](const host::Decoded &text) { m_texts.push_back(text); })
    {
        m_session.start();
    }

    void hear(std::span<const std::int16_t> samples)
    {
        constexpr std::size_t piece = 1600;
        while (!samples.empty()) {
            const std::size_t count = std::min(piece, samples.size());
            m_session.append(samples.first(count));
            samples = samples.subspan(count);
        }
    }

    const std::vector<host::Decoded> &finish()
    {
        m_session.finish();
        return m_texts;
    }

private:
    static host::Configure configuration()
    {
        host::Configure configuration;
        configuration.runtimeFolder = LUMAPHONE_SPEECH_RUNTIME;
        configuration.voiceDetector = encodedPath(installation().voiceDetector);
        configuration.network = toyNetwork();
        return configuration;
    }

    std::vector<host::Decoded> m_texts;
    SpeechHostSession m_session;
};

struct Spoken
{
    ToyPhrase phrase;
    std::int64_t start = 0;
    std::int64_t end = 0;
};

/// The networks are small: a word may be missing. No two phrases of the test are so similar.
bool isNearly(const QString &heard, const QString &spoken)
{
    std::vector<qsizetype> common(static_cast<std::size_t>(heard.size()) + 1);
    for (const QChar letter : spoken) {
        qsizetype diagonal = 0;
        for (std::size_t i = 1; i < common.size(); ++i) {
            const bool isSame = heard[static_cast<qsizetype>(i) - 1] == letter;
            const qsizetype best = isSame ? diagonal + 1 : std::max(common[i], common[i - 1]);
            diagonal = std::exchange(common[i], best);
        }
    }
    return common.back() * 4 >= std::max(heard.size(), spoken.size()) * 3;
}

// A segment keeps 0.3 s before its speech and 0.25 s behind it; the detector hesitates, and behind speech it
// fades.
constexpr std::int64_t leastBefore = -(rateHz * 4) / 10;
constexpr std::int64_t mostAfter = (rateHz * 6) / 10;

} // namespace

class SpeechHostEnduranceTest : public QObject
{
    Q_OBJECT

private slots:
    void tenMinutesWithoutSpeechGiveNoCaption_data()
    {
        QTest::addColumn<Sound>("sound");
        QTest::newRow("silence") << Sound([](std::size_t) { return std::int16_t {}; });
        QTest::newRow("white noise") << whiteNoise(0.1);
        QTest::newRow("pink noise") << pinkNoise(0.03);
        QTest::newRow("chords") << chords(0.1);
        QTest::newRow("short sounds") << shortSounds(0.3);
    }
    void tenMinutesWithoutSpeechGiveNoCaption()
    {
        QFETCH(Sound, sound);
        HeardTexts heard;
        HostedRecognizer recognizer(installation(), all, heard.sink());
        recognizer.load();
        std::vector<std::int16_t> second(rateHz);
        for (std::size_t index = 0; index < tenMinutes; index += second.size()) {
            for (std::size_t i = 0; i < second.size(); ++i) {
                second[i] = sound(index + i);
            }
            recognizer.accept(second);
        }
        recognizer.finish();
        for (const Heard &text : heard.all()) {
            qInfo("heard: %s", qPrintable(text.text));
        }
        QVERIFY(heard.all().empty());
    }

    /// Speech at known times in quiet pink noise, between loud noise and short sounds: what is heard is heard
    /// while somebody speaks, give or take what a segment keeps of the silence around it.
    void inAMixedStreamOnlySpeechIsHeard()
    {
        std::mt19937 random(4);
        const auto phrases = toyPhrases();
        Listening listening;
        std::vector<Spoken> spoken;
        std::vector<std::int16_t> stream;
        const Sound background = pinkNoise(0.0008);
        const Sound noise = whiteNoise(0.05);
        const Sound music = shortSounds(0.2);
        for (int i = 0; stream.size() < tenMinutes; ++i) {
            const Sound *const loud = i % 4 == 0 ? &noise : i % 4 == 2 ? &music : nullptr;
            const std::size_t pause = (loud != nullptr ? 4 : 1) * rateHz + random() % (3 * rateHz);
            for (std::size_t k = 0; k < pause; ++k) {
                const bool isLoud = loud != nullptr && k > rateHz && k + rateHz < pause;
                stream.push_back(static_cast<std::int16_t>(background(k) + (isLoud ? (*loud)(k) : 0)));
            }
            const ToyPhrase &phrase = phrases[random() % phrases.size()];
            const auto start = static_cast<std::int64_t>(stream.size());
            for (const std::int16_t sample : speak(phrase)) {
                stream.push_back(
                    static_cast<std::int16_t>(std::clamp(sample + background(0), -32768, 32767)));
            }
            spoken.push_back({phrase, start, static_cast<std::int64_t>(stream.size())});
        }
        const auto quiet = silence(1);
        stream.insert(stream.end(), quiet.begin(), quiet.end());
        listening.hear(stream);

        QStringList outside;
        int right = 0;
        for (const host::Decoded &text : listening.finish()) {
            if (!text.isFinal || text.text.empty()
                || !mayBeSpeech(QString::fromStdString(text.event), QString::fromStdString(text.language))) {
                continue;
            }
            const auto at = std::find_if(spoken.begin(), spoken.end(), [&text](const Spoken &each) {
                return text.start >= each.start + leastBefore && text.end <= each.end + mostAfter;
            });
            if (at == spoken.end()) {
                const auto next = std::find_if(spoken.begin(), spoken.end(),
                    [&text](const Spoken &each) { return each.end > text.start; });
                const Spoken &near = next == spoken.end() ? spoken.back() : *next;
                outside.append(QStringLiteral("%1 from %2 s to %3 s, spoken from %4 s to %5 s")
                                   .arg(QString::fromStdString(text.text))
                                   .arg(double(text.start) / rateHz)
                                   .arg(double(text.end) / rateHz)
                                   .arg(double(near.start) / rateHz)
                                   .arg(double(near.end) / rateHz));
                continue;
            }
            right += QString::fromStdString(text.text) == at->phrase.text ? 1 : 0;
        }
        QVERIFY2(outside.isEmpty(), qPrintable(outside.join(QStringLiteral(", "))));
        qInfo("%d of %zu phrases", right, spoken.size());
        QVERIFY(right >= static_cast<int>(spoken.size()) * 8 / 10);
    }

    /// The host is killed again and again while phrases are spoken. Each time the segment that is open in
    /// the host may be lost; no other is, none comes twice, and none out of order.
    void aHostKilledAtRandomMomentsLosesNoFinalText()
    {
        std::mt19937 random(6);
        const auto phrases = toyPhrases();
        for (int round = 0; round < 4; ++round) {
            HeardTexts heard;
            HostedRecognizer recognizer(installation(), all, heard.sink());
            recognizer.load();
            std::vector<QString> expected;
            std::vector<std::size_t> kills {random() % 20, random() % 20, random() % 20};
            const TaiwanWording wording(WrittenChinese::simplified);
            for (std::size_t i = 0; i < 20; ++i) {
                const ToyPhrase &phrase = phrases[(i * 5) % phrases.size()];
                expected.push_back(phrase.language == "zh" ? wording.rewrite(phrase.text) : phrase.text);
                const auto sound = speak(phrase);
                const std::size_t cut = random() % sound.size();
                feed(recognizer, std::span(sound).first(cut));
                for (auto kill = std::count(kills.begin(), kills.end(), i); kill > 0; --kill) {
                    const pid_t process = recognizer.hostProcessId();
                    if (process > 0) {
                        ::kill(process, SIGKILL);
                    }
                }
                feed(recognizer, std::span(sound).subspan(cut));
                feed(recognizer, silence(0.8));
            }
            recognizer.finish();
            auto next = expected.begin();
            std::size_t lost = 0;
            for (const Heard &text : heard.finals()) {
                const auto found = std::find_if(next, expected.end(),
                    [&text](const QString &phrase) { return isNearly(text.text, phrase); });
                QVERIFY2(found != expected.end(), qPrintable(text.text));
                lost += static_cast<std::size_t>(found - next);
                next = found + 1;
            }
            lost += static_cast<std::size_t>(expected.end() - next);
            qInfo("%zu of %zu phrases lost to %zu kills", lost, expected.size(), kills.size());
            QVERIFY(lost <= kills.size());
        }
    }
};

LUMAPHONE_TEST(SpeechHostEnduranceTest)

} // namespace speechhostendurancetest

#include "SpeechHostEnduranceTest.moc"
