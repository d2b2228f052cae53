// The translation engine beside the reference implementation of its model format, in one run: the same
// generated models of true shapes, the same lines.
#include "support/engine/GeneratedFolder.h"
#include "support/engine/ReferenceTranslator.h"
#include "support/engine/VocabularyTrainer.h"
#include "translation/engine/Translator.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <numeric>
#include <random>
#include <thread>

using namespace lumaphone;
using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

namespace {

using SteadyClock = std::chrono::steady_clock;
constexpr int captionWords = 15;
constexpr int captions = 20;
constexpr int rounds = 3;

double millisecondsSince(SteadyClock::time_point start)
{
    return std::chrono::duration<double, std::milli>(SteadyClock::now() - start).count();
}

double processorMilliseconds(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// What the machine's memory gives to readers of a buffer larger than its caches, in gigabytes per second of
/// their processor time.
double memoryBandwidth(int threads)
{
    constexpr std::size_t bytes = std::size_t(256) << 20;
    std::vector<std::uint64_t> buffer(bytes / sizeof(std::uint64_t), 1);
    double best = 0;
    std::vector<std::uint64_t> sums(std::size_t(threads) * 64);
    std::vector<double> rates(std::size_t(threads) * 64);
    for (int round = 0; round < 5; ++round) {
        {
            std::vector<std::jthread> readers;
            const std::size_t share = buffer.size() / std::size_t(threads);
            for (int thread = 0; thread < threads; ++thread) {
                readers.emplace_back([&, thread] {
                    const double start = processorMilliseconds(CLOCK_THREAD_CPUTIME_ID);
                    const auto first = buffer.begin() + std::ptrdiff_t(std::size_t(thread) * share);
                    sums[std::size_t(thread) * 64]
                        += std::accumulate(first, first + std::ptrdiff_t(share), std::uint64_t(0));
                    rates[std::size_t(thread) * 64] = double(share * sizeof(std::uint64_t))
                        / (processorMilliseconds(CLOCK_THREAD_CPUTIME_ID) - start) / 1e6;
                });
            }
        }
        best = std::max(best, std::accumulate(rates.begin(), rates.end(), 0.0));
    }
    return std::accumulate(sums.begin(), sums.end(), std::uint64_t(0)) > 0 ? best : 0;
}

/// Lines of words that the naming vocabularies know.
QStringList captionLines(int words)
{
    std::mt19937 random(9);
    QStringList lines;
    for (int line = 0; line < captions; ++line) {
        std::vector<int> caption(captionWords - 1); // and the sentence's end
        for (int &word : caption)
            word = int(2 + random() % unsigned(words - 2));
        lines.append(QString::fromStdString(namesOf(caption)));
    }
    return lines;
}

struct Case
{
    QString name;
    QList<ModelFiles> legs;
    QStringList lines;
};

ModelFiles generated(const GeneratedFolder &folder, const QString &name, ModelShape shape, bool isSplit)
{
    const int words = shape.targetWords;
    if (isSplit)
        shape.sourceWords = words;
    ModelFiles files;
    files.model = folder.write(name + QStringLiteral(".bin"), generateModel(shape));
    files.sourceVocabulary = folder.write(name + QStringLiteral(".src.spm"), namingVocabulary(words));
    if (isSplit)
        files.targetVocabulary = folder.write(name + QStringLiteral(".trg.spm"), namingVocabulary(words));
    files.shortlist = folder.write(name + QStringLiteral(".lex"), generateShortlist(words, words, 50, 50, 1));
    return files;
}

ModelFiles withoutShortlist(ModelFiles files)
{
    files.shortlist.clear();
    return files;
}

std::unique_ptr<Translator> translatorFor(
    const QList<ModelFiles> &legs, int threads, WrittenChinese written = WrittenChinese::none)
{
    EngineOptions options;
    options.threads = threads;
    std::vector<std::shared_ptr<TranslationModel>> models;
    for (const ModelFiles &leg : legs)
        models.push_back(std::make_shared<TranslationModel>(leg, options));
    return std::make_unique<Translator>(models, written);
}

/// By the clock, and without the time that others had the processor.
struct Times
{
    QList<double> milliseconds;
    QList<double> processorMilliseconds;
};

void measureEngine(const Case &measured, int threads, Times &times)
{
    const auto translator = translatorFor(measured.legs, threads);
    for (int index = 0; index < 3; ++index)
        translator->translate(measured.lines[index]);
    for (const QString &line : measured.lines) {
        const auto start = SteadyClock::now();
        const double before = processorMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
        translator->translate(line);
        times.processorMilliseconds.append(processorMilliseconds(CLOCK_PROCESS_CPUTIME_ID) - before);
        times.milliseconds.append(millisecondsSince(start));
    }
}

/// Bytes of weights that one caption needs: the encoder's once, the decoder's and the output's at every word.
double weightsRead(const ModelFiles &files, const QStringList &lines)
{
    SentenceModel model(files, {});
    const StudentModel &student = model.student();
    const double width = student.settings().width;
    const double inner = student.settings().innerWidth;
    const double encoder = double(student.encoder().size()) * (4 * width * width + 2 * width * inner);
    const double once = encoder + double(student.decoder().size()) * 2 * width * width;
    const double decoder = double(student.decoder().size()) * (4 * width * width + 2 * width * inner);
    double total = 0;
    for (const QString &line : lines) {
        std::vector<int> words;
        for (const Vocabulary::Piece &piece : model.sourceVocabulary().encode(line.toStdString()))
            words.push_back(piece.word);
        std::vector<int> source = words;
        source.push_back(model.sourceVocabulary().endOfSentence());
        const double candidates = files.shortlist.isEmpty()
            ? student.target().rows
            : double(LexicalShortlist(files.shortlist, student.source().rows, student.target().rows)
                         .candidates(source, student.isShared())
                         .size());
        // Of digits nearly all are high ones, which are half of the weights.
        const double output = candidates * width / (student.output().digits ? 2 : 1);
        total += once + double(model.translate(words).words.size()) * (decoder + output);
    }
    return total / double(lines.size());
}

double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

/// Started as a process of its own: loads the legs named by its arguments, translates, and prints what it
/// occupied.
int measureMemory(const QStringList &arguments)
{
    QList<ModelFiles> legs;
    for (qsizetype index = 0; index + 4 <= arguments.size(); index += 4)
        legs.append({arguments[index], arguments[index + 1], arguments[index + 2], arguments[index + 3]});
    const auto translator = translatorFor(legs, 2, WrittenChinese::traditional);
    QStringList lines = captionLines(32000);
    // And a sentence as long as a model takes.
    lines.append(lines.join(QLatin1Char(' ')).section(QLatin1Char(' '), 0, mostSourceTokens - 2));
    for (const QString &line : lines)
        translator->translate(line);
    std::printf("%.1f\n", residentMegabytes());
    return 0;
}

double engineMegabytes(const QList<ModelFiles> &legs)
{
    QStringList arguments = {QStringLiteral("--memory")};
    for (const ModelFiles &leg : legs)
        arguments << leg.model << leg.sourceVocabulary << leg.targetVocabulary << leg.shortlist;
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), arguments);
    process.waitForFinished(-1);
    return process.readAllStandardOutput().trimmed().toDouble();
}

double weightMegabytes(const QList<ModelFiles> &legs)
{
    double bytes = 0;
    for (const ModelFiles &leg : legs)
        bytes += double(QFileInfo(leg.model).size());
    return bytes / 1048576;
}

void report(const Case &measured, double bandwidth)
{
    Times oneThread;
    Times twoThreads;
    Times reference;
    double referenceMegabytes = 0;
    // In turns, so that whatever else the machine does meets all of them.
    for (int round = 0; round < rounds; ++round) {
        const ReferenceAnswer answer = translateWithReference(measured.legs, measured.lines, 3);
        reference.milliseconds += answer.milliseconds;
        reference.processorMilliseconds += answer.processorMilliseconds;
        referenceMegabytes = answer.megabytes;
        measureEngine(measured, 1, oneThread);
        measureEngine(measured, 2, twoThreads);
    }
    const double one = median(oneThread.milliseconds);
    const double two = median(twoThreads.milliseconds);
    const double theirs = median(reference.milliseconds);
    const double oneProcessor = median(oneThread.processorMilliseconds);
    const double theirProcessor = median(reference.processorMilliseconds);
    std::printf("%-34s %8.1f %8.1f %9.1f %6.1fx %6.1fx; processor time %.1f of %.1f: %.1fx",
        qPrintable(measured.name), one, two, theirs, theirs / one, theirs / two, oneProcessor, theirProcessor,
        theirProcessor / oneProcessor);
    const double megabytes = engineMegabytes(measured.legs);
    std::printf("; %.0f MB = weights + %.0f (reference %.0f)", megabytes,
        megabytes - weightMegabytes(measured.legs), referenceMegabytes);
    if (measured.legs.size() == 1) {
        const double read = weightsRead(measured.legs.first(), measured.lines);
        std::printf("; %.0f MB of weights read: %.1f GB/s by processor time, %.1f with two threads, of %.1f",
            read / 1e6, read / oneProcessor / 1e6, read / two / 1e6, bandwidth);
    }
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--memory"))
        return measureMemory(arguments.mid(2));

    const double bandwidth = memoryBandwidth(2);
    std::printf("Kernels: %s. Memory read: %.1f GB/s with one thread, %.1f with two.\n",
        fastestKernels().name, memoryBandwidth(1), bandwidth);
    std::printf("Median milliseconds per caption of %d tokens; the models write up to twice as many.\n\n",
        captionWords);
    std::printf("%-34s %8s %8s %9s %7s %7s\n", "", "1 thread", "2", "reference", "1", "2 threads");

    const GeneratedFolder folder;
    ModelShape pivot = largeStudent();
    // The first leg of a pivot should write about as many words as it read.
    pivot.endBias = 9;
    pivot.seed = 2;
    const ModelFiles direct = generated(folder, QStringLiteral("direct"), middleStudent(), true);
    const ModelFiles large = generated(folder, QStringLiteral("large"), largeStudent(), false);
    ModelFiles first = generated(folder, QStringLiteral("first"), pivot, false);
    const QStringList lines = captionLines(32000);
    const Case cases[] = {{QStringLiteral("384 wide, 32k words"), {withoutShortlist(direct)}, lines},
        {QStringLiteral("384 wide, 32k words, shortlist"), {direct}, lines},
        {QStringLiteral("512 wide, 64k words"), {withoutShortlist(large)}, lines},
        {QStringLiteral("512 wide, 64k words, shortlist"), {large}, lines},
        {QStringLiteral("512 then 384"), {withoutShortlist(first), withoutShortlist(direct)}, lines},
        {QStringLiteral("512 then 384, shortlists"), {first, direct}, lines}};
    // An argument chooses those whose name it begins.
    for (const Case &measured : cases) {
        if (measured.name.startsWith(arguments.value(1)))
            report(measured, bandwidth);
    }
    return 0;
}
