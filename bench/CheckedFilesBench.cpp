#include "base/AtomicFile.h"
#include "models/CheckedFiles.h"
#include "support/ModelFixtures.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace lumaphone;

namespace {

/// Files of a size, which lie in the system's cache.
class Files
{
public:
    explicit Files(const std::vector<qsizetype> &sizes)
    {
        for (const qsizetype size : sizes) {
            const QString path = m_folder.filePath(QString::number(m_files.size()));
            const QByteArray bytes = test::noise(size, unsigned(size));
            replaceFile(path, bytes, Durability::renamed);
            m_files.push_back({path, {size, test::sha256Of(bytes)}});
            m_bytes += size;
        }
    }

    void check(const QString &record) const
    {
        // As if they had been there for a while.
        CheckedFiles checked(
            record, {[] { return std::chrono::system_clock::now() + std::chrono::hours(1); }, &digestOf});
        for (const auto &[path, digest] : m_files) {
            checked.demand(path, digest);
        }
    }
    QString record() const { return m_folder.filePath(QStringLiteral("record.json")); }
    const QString &path() const { return m_files.front().first; }
    qint64 bytes() const { return m_bytes; }

private:
    QTemporaryDir m_folder;
    std::vector<std::pair<QString, FileDigest>> m_files;
    qint64 m_bytes = 0;
};

/// What a start needs: the English network with its voice detector and vocabulary, or a network for four
/// languages.
const std::vector<qsizetype> english {7'937'661, 20'243'286, 549'354, 1'807'522};
const std::vector<qsizetype> fourLanguages {239'233'841};

void firstTime(benchmark::State &state, const std::vector<qsizetype> &sizes)
{
    const Files files(sizes);
    for (auto _ : state) {
        removeFile(files.record());
        files.check(files.record());
    }
    state.SetBytesProcessed(state.iterations() * files.bytes());
}

void inALaterProcess(benchmark::State &state, const std::vector<qsizetype> &sizes)
{
    const Files files(sizes);
    files.check(files.record());
    for (auto _ : state) {
        files.check(files.record());
    }
}

/// The toolkit's own hash over the largest of the English files, for comparison.
void toolkitHash(benchmark::State &state)
{
    const Files files({english[1]});
    for (auto _ : state) {
        QFile file(files.path());
        file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        QCryptographicHash hash(QCryptographicHash::Sha256);
        hash.addData(&file);
        benchmark::DoNotOptimize(hash.result());
    }
    state.SetBytesProcessed(state.iterations() * files.bytes());
}

void ownHash(benchmark::State &state)
{
    const Files files({english[1]});
    for (auto _ : state) {
        benchmark::DoNotOptimize(digestOf(files.path()));
    }
    state.SetBytesProcessed(state.iterations() * files.bytes());
}

} // namespace

BENCHMARK_CAPTURE(firstTime, english, english)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(firstTime, fourLanguages, fourLanguages)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(inALaterProcess, english, english)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(inALaterProcess, fourLanguages, fourLanguages)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(toolkitHash)->Unit(benchmark::kMillisecond);
BENCHMARK(ownHash)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
