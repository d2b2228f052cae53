// How well and how quickly an engine recognises recordings with transcripts, at the speed of sound:
//     Scorecard ENGINE LIST
// ENGINE: "pocketsphinx", "installed" (the networks the user has installed) or a folder with model.int8.onnx,
// tokens.txt and silero_vad.onnx. LIST has a line for each recording: locale, TAB, WAV file (16 kHz mono),
// TAB, transcript. English and Korean are scored by words, the others by characters.

#include "models/ModelStore.h"
#include "platform/linux/HostedSpeechEngine.h"
#include "platform/linux/InstalledSpeechModel.h"
#include "platform/linux/PocketSphinxEngine.h"
#include "platform/linux/XdgFolders.h"
#include "speech/TaiwanTraditional.h"
#include "storage/UserFiles.h"
#include "support/WavFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <thread>

using namespace lumaphone;
using Clock = std::chrono::steady_clock;

namespace {

struct Recording
{
    QString locale;
    QString path;
    QString transcript;
};

struct Heard
{
    QString text;
    bool isFinal = false;
    double at = 0; ///< seconds since the first sample
};

/// What is compared: without punctuation and case; words, or characters where blanks mean nothing.
QStringList units(const QString &text, const QString &locale)
{
    static const QRegularExpression marks(QStringLiteral("[\\p{P}\\p{S}]"));
    const QString plain = QString(text).remove(marks).toLower();
    if (locale == QStringLiteral("en-US") || locale == QStringLiteral("ko-KR")) {
        return plain.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }
    return QString(plain).remove(QLatin1Char(' ')).split(QString(), Qt::SkipEmptyParts);
}

qsizetype errors(const QStringList &spoken, const QStringList &heard)
{
    QList<qsizetype> row(heard.size() + 1);
    for (qsizetype column = 0; column < row.size(); ++column) {
        row[column] = column;
    }
    for (qsizetype i = 0; i < spoken.size(); ++i) {
        qsizetype diagonal = row[0]++;
        for (qsizetype column = 1; column < row.size(); ++column) {
            const qsizetype same = diagonal + (spoken[i] == heard[column - 1] ? 0 : 1);
            diagonal = std::exchange(row[column], std::min({row[column] + 1, row[column - 1] + 1, same}));
        }
    }
    return row.last();
}

struct Sums
{
    qsizetype units = 0;
    qsizetype errors = 0;
    qsizetype erased = 0; ///< units that were shown and taken back
    qsizetype shown = 0; ///< units of final texts
    std::vector<double> firstWord; ///< seconds after the speech began
    std::vector<double> final; ///< seconds after the sound ended
    double soundSeconds = 0;
};

double median(std::vector<double> values)
{
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double cpuSeconds()
{
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage {};
        ::getrusage(static_cast<__rusage_who>(who), &usage);
        sum += double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
            + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    }
    return sum;
}

SpeechInstallation installationIn(const SpeechModelFiles &files)
{
    return {QStringLiteral(LUMAPHONE_SPEECH_HOST), QStringLiteral(LUMAPHONE_SPEECH_RUNTIME),
        files.voiceDetector, files.network, {}};
}

std::shared_ptr<SpeechEngine> engineNamed(const QString &name)
{
    if (name == QStringLiteral("pocketsphinx")) {
        return std::make_shared<PocketSphinxEngine>();
    }
    std::variant<SpeechModelFiles, QString> files
        = SpeechModelFiles {name + QStringLiteral("/silero_vad.onnx"),
            {host::NetworkKind::senseVoice, {(name + QStringLiteral("/model.int8.onnx")).toStdString()},
                (name + QStringLiteral("/tokens.txt")).toStdString()}};
    if (name == QStringLiteral("installed")) {
        files = installedSpeechModel(ModelStore(modelsFolder(XdgFolders()), ModelCatalogue::configured()));
    }
    return std::make_shared<HostedSpeechEngine>(
        std::vector {SpokenLanguage::japanese, SpokenLanguage::english, SpokenLanguage::korean,
            SpokenLanguage::mandarin},
        [files]() -> HostedSpeechEngine::Installation {
            if (const auto *const missing = std::get_if<QString>(&files)) {
                return *missing;
            }
            return installationIn(std::get<SpeechModelFiles>(files));
        });
}

std::vector<Heard> recognise(
    const SpeechEngine &engine, const QString &locale, std::vector<std::int16_t> samples)
{
    std::mutex mutex;
    std::vector<Heard> heard;
    Clock::time_point start;
    const auto recognizers
        = engine.makeRecognizers({locale}, [&](const QString &, const SpeechResult &result) {
              const std::lock_guard lock(mutex);
              heard.push_back(
                  {result.text, result.isFinal, std::chrono::duration<double>(Clock::now() - start).count()});
          });
    if (recognizers.empty()) {
        return {};
    }
    StreamingRecognizer &recognizer = *recognizers.front();
    recognizer.load();
    constexpr std::size_t piece = 320;
    samples.resize((samples.size() + 16000) / piece * piece); // a second of silence ends the last sentence
    start = Clock::now();
    for (std::size_t at = 0; at < samples.size(); at += piece) {
        std::this_thread::sleep_until(start + std::chrono::milliseconds(20) * (at / piece + 1));
        recognizer.accept(std::span(samples).subspan(at, piece));
    }
    recognizer.finish();
    return heard;
}

void score(const Recording &recording, const std::vector<Heard> &heard, double speechStart, double soundEnd,
    Sums &sums)
{
    QString text;
    QStringList before;
    for (const Heard &each : heard) {
        const QStringList now = units(each.text, recording.locale);
        const auto kept = std::mismatch(before.begin(), before.end(), now.begin(), now.end()).first;
        sums.erased += before.end() - kept;
        before = each.isFinal ? QStringList() : now;
        if (each.isFinal) {
            sums.shown += now.size();
            text += QLatin1Char(' ') + each.text;
        }
    }
    if (!heard.empty()) {
        sums.firstWord.push_back(heard.front().at - speechStart);
        sums.final.push_back(heard.back().at - soundEnd);
    }
    const bool isMandarin = recording.locale == QStringLiteral("zh-Hant-TW");
    const QStringList spoken
        = units(isMandarin ? TaiwanTraditional().convert(recording.transcript) : recording.transcript,
            recording.locale);
    sums.units += spoken.size();
    sums.errors += errors(spoken, units(text, recording.locale));
}

std::vector<Recording> recordingsIn(const QString &list)
{
    QFile file(list);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(list));
    }
    std::vector<Recording> recordings;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const QStringList fields = QString::fromUtf8(line).split(QLatin1Char('\t'));
        if (fields.size() == 3) {
            recordings.push_back({fields[0], QFileInfo(list).dir().filePath(fields[1]), fields[2]});
        }
    }
    return recordings;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "Scorecard ENGINE LIST\n");
        return 64;
    }
    const auto engine = engineNamed(arguments[1]);
    QMap<QString, Sums> languages;
    const double cpuBefore = cpuSeconds();
    double soundSeconds = 0;
    for (const Recording &recording : recordingsIn(arguments[2])) {
        const auto samples = test::samplesOfWav(recording.path);
        const auto loud
            = std::find_if(samples.begin(), samples.end(), [](int sample) { return std::abs(sample) > 300; });
        Sums &sums = languages[recording.locale];
        const double length = double(samples.size()) / 16000;
        score(recording, recognise(*engine, recording.locale, samples),
            double(loud - samples.begin()) / 16000, length, sums);
        sums.soundSeconds += length;
        soundSeconds += length;
    }
    for (auto it = languages.cbegin(); it != languages.cend(); ++it) {
        const Sums &sums = it.value();
        std::printf("%-11s %7.1f s  errors %5.1f %% (%lld of %lld)  first word %5.2f s  final %5.2f s  "
                    "erasure %.2f\n",
            qPrintable(it.key()), sums.soundSeconds, 100.0 * double(sums.errors) / double(sums.units),
            static_cast<long long>(sums.errors), static_cast<long long>(sums.units), median(sums.firstWord),
            median(sums.final), double(sums.erased) / double(std::max<qsizetype>(1, sums.shown)));
    }
    std::printf(
        "processor: %.2f of real time, loading included\n", (cpuSeconds() - cpuBefore) / soundSeconds);
    return 0;
}
