// Word error rate, CPU time and speed of our recogniser beside those of pocketsphinx_continuous, on the human
// speech of Debian's package pocketsphinx-testdata. The runs alternate; every run is a process of its own
// that loads the model and recognises one file, so that both sides do the same work.

#include "platform/linux/PocketSphinxEngine.h"
#include "support/WavFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

using namespace lumaphone;

namespace {

constexpr int runs = 5;
const auto testData = QStringLiteral("/usr/share/pocketsphinx/test/data/");

struct Recording
{
    QString path;
    QStringList words;
};

struct DataSet
{
    QString name;
    QString transcriptions;
};

/// Lines such as: <s> five five  </s> (004)
std::vector<Recording> recordingsOf(const DataSet &set)
{
    QFile file(testData + set.name + QLatin1Char('/') + set.transcriptions);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s is missing: install the package pocketsphinx-testdata", qPrintable(file.fileName()));
    }
    static const QRegularExpression line(QStringLiteral("<s>(.*)</s> \\((\\S+)\\)"));
    std::vector<Recording> recordings;
    while (!file.atEnd()) {
        const auto match = line.match(QString::fromUtf8(file.readLine()));
        if (match.hasMatch()) {
            recordings.push_back(
                {testData + set.name + QLatin1Char('/') + match.captured(2) + QStringLiteral(".wav"),
                    match.captured(1).split(QLatin1Char(' '), Qt::SkipEmptyParts)});
        }
    }
    return recordings;
}

/// Insertions, deletions and substitutions that turn one list of words into the other.
qsizetype wordErrors(const QStringList &spoken, const QStringList &heard)
{
    QList<qsizetype> row(heard.size() + 1);
    for (qsizetype column = 0; column < row.size(); ++column) {
        row[column] = column;
    }
    for (qsizetype i = 0; i < spoken.size(); ++i) {
        qsizetype diagonal = row[0]++;
        for (qsizetype column = 1; column < row.size(); ++column) {
            const bool isSame = spoken[i] == heard[column - 1];
            const qsizetype cheapest
                = std::min({row[column] + 1, row[column - 1] + 1, diagonal + (isSame ? 0 : 1)});
            diagonal = std::exchange(row[column], cheapest);
        }
    }
    return row.last();
}

double userSeconds(int who)
{
    rusage usage {};
    getrusage(who, &usage);
    return double(usage.ru_utime.tv_sec) + double(usage.ru_utime.tv_usec) / 1e6;
}

struct Run
{
    QStringList words;
    double userSeconds = 0;
    double wallSeconds = 0;
};

Run runProgram(const QString &program, const QStringList &arguments)
{
    const double userBefore = userSeconds(RUSAGE_CHILDREN);
    const auto before = std::chrono::steady_clock::now();
    QProcess process;
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        qFatal("%s failed", qPrintable(program));
    }
    Run run;
    run.wallSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
    run.userSeconds = userSeconds(RUSAGE_CHILDREN) - userBefore;
    run.words = QString::fromUtf8(process.readAllStandardOutput())
                    .split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    return run;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// One side of the comparison, summed over the recordings of a data set.
struct Side
{
    qsizetype errors = 0;
    double userSeconds = 0;
    double wallSeconds = 0;

    void print(const char *name, qsizetype words, double soundSeconds) const
    {
        std::printf(
            "  %-24s word error rate %5.1f %% (%lld of %lld)   user CPU %6.2f s   real-time factor %.3f\n",
            name, 100.0 * double(errors) / double(words), static_cast<long long>(errors),
            static_cast<long long>(words), userSeconds, wallSeconds / soundSeconds);
    }
};

/// The median of several runs of one program on one recording.
class Measurement
{
public:
    void add(const Run &run)
    {
        m_words = run.words;
        m_user.push_back(run.userSeconds);
        m_wall.push_back(run.wallSeconds);
    }
    void addTo(Side &side, const QStringList &spoken) const
    {
        side.errors += wordErrors(spoken, m_words);
        side.userSeconds += median(m_user);
        side.wallSeconds += median(m_wall);
    }

private:
    QStringList m_words;
    std::vector<double> m_user;
    std::vector<double> m_wall;
};

void compare(const DataSet &set)
{
    Side ours;
    Side theirs;
    qsizetype words = 0;
    double soundSeconds = 0;
    for (const Recording &recording : recordingsOf(set)) {
        Measurement our;
        Measurement their;
        for (int i = 0; i < runs; ++i) {
            our.add(runProgram(
                QCoreApplication::applicationFilePath(), {QStringLiteral("--recognise"), recording.path}));
            their.add(runProgram(QStringLiteral("pocketsphinx_continuous"),
                {QStringLiteral("-infile"), recording.path, QStringLiteral("-logfn"),
                    QStringLiteral("/dev/null")}));
        }
        our.addTo(ours, recording.words);
        their.addTo(theirs, recording.words);
        words += recording.words.size();
        soundSeconds += double(test::samplesOfWav(recording.path).size()) / PcmBuffer::sampleRateHz;
    }
    std::printf("%s: %.1f s of speech, median of %d runs\n", qPrintable(set.name), soundSeconds, runs);
    ours.print("lumaphone", words, soundSeconds);
    theirs.print("pocketsphinx_continuous", words, soundSeconds);
    std::printf("  user CPU, ratio          %.2f\n", ours.userSeconds / theirs.userSeconds);
    std::fflush(stdout);
}

void recognise(const QString &path)
{
    const PocketSphinxEngine engine;
    const auto recognizers
        = engine.makeRecognizers({QStringLiteral("en-US")}, [](const QString &, const SpeechResult &result) {
              if (result.isFinal) {
                  std::printf("%s\n", qPrintable(result.text));
              }
          });
    for (const auto &recognizer : recognizers) {
        recognizer->load();
        recognizer->accept(test::samplesOfWav(path));
        recognizer->finish();
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 3 && arguments[1] == QStringLiteral("--recognise")) {
        recognise(arguments[2]);
        return 0;
    }
    compare({QStringLiteral("librivox"), QStringLiteral("transcription")});
    compare({QStringLiteral("cards"), QStringLiteral("cards.transcription")});
    return 0;
}
