#include "support/ToySpeech.h"

#include "support/WavFile.h"

#include <QFile>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace lumaphone::test {

namespace {

constexpr int synthesisLimitMs = 20000;
// The voice begins and ends with a little silence.
constexpr int quiet = 100;

QString voiceOf(const QString &language)
{
    static const QHash<QString, QString> voices {
        {QStringLiteral("ja"), QStringLiteral("ja")},
        {QStringLiteral("en"), QStringLiteral("en-us")},
        {QStringLiteral("ko"), QStringLiteral("ko")},
        {QStringLiteral("zh"), QStringLiteral("cmn-latn-pinyin")},
    };
    return voices.value(language);
}

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(synthesisLimitMs) || process.exitCode() != 0) {
        throw std::runtime_error(
            (program + QStringLiteral(" failed: ") + QString::fromUtf8(process.readAllStandardError()))
                .toStdString());
    }
}

} // namespace

QString toySpeechFile(const QString &name)
{
    return QStringLiteral(LUMAPHONE_TEST_DATA "/speech-toy/") + name;
}

std::vector<ToyPhrase> toyPhrases()
{
    QFile file(toySpeechFile(QStringLiteral("phrases.tsv")));
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("phrases.tsv is missing");
    }
    std::vector<ToyPhrase> phrases;
    while (!file.atEnd()) {
        const QStringList fields = QString::fromUtf8(file.readLine()).trimmed().split(QLatin1Char('\t'));
        phrases.push_back({fields.at(0), fields.at(1), fields.at(2)});
    }
    return phrases;
}

std::vector<std::int16_t> speak(const ToyPhrase &phrase, const ToyVoice &voice)
{
    const QTemporaryDir folder;
    const QString spoken = folder.filePath(QStringLiteral("spoken.wav"));
    const QString converted = folder.filePath(QStringLiteral("converted.wav"));
    QString name = voiceOf(phrase.language);
    if (!voice.variant.isEmpty()) {
        name += QLatin1Char('+') + voice.variant;
    }
    run(QStringLiteral("espeak-ng"),
        {QStringLiteral("-v"), name, QStringLiteral("-s"), QString::number(voice.wordsPerMinute),
            QStringLiteral("-p"), QString::number(voice.pitch), QStringLiteral("-w"), spoken,
            phrase.spelling});
    run(QStringLiteral("sox"),
        {QStringLiteral("-D"), spoken, QStringLiteral("-r"), QStringLiteral("16000"), QStringLiteral("-c"),
            QStringLiteral("1"), QStringLiteral("-b"), QStringLiteral("16"), converted});
    const std::vector<std::int16_t> samples = samplesOfWav(converted);
    const auto isHeard = [](std::int16_t sample) {
        return std::abs(int {sample}) > quiet;
    };
    const auto first = std::find_if(samples.begin(), samples.end(), isHeard);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), isHeard).base();
    return {first, std::max(first, last)};
}

std::vector<std::int16_t> silence(double seconds)
{
    return std::vector<std::int16_t>(static_cast<std::size_t>(seconds * 16000));
}

} // namespace lumaphone::test
