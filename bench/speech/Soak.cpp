#include "bench/speech/Soak.h"

#include "bench/speech/ProcessUse.h"
#include "bench/speech/ProgramUnderTest.h"
#include "bench/speech/ScorecardColumn.h"
#include "bench/speech/Waiting.h"

#include <QTimer>

#include <algorithm>
#include <functional>
#include <iterator>

namespace lumaphone::bench {

namespace {

using namespace std::chrono_literals;

/// At one moment.
struct Use
{
    test::TraceTime at;
    double cpuSeconds = 0; ///< since the program was started
    double programMB = 0;
    double hostMB = 0;
};

/// Looks at the running program every second.
class UseRecord
{
public:
    explicit UseRecord(pid_t process)
        : m_process(process)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { note(); });
        m_timer.start(1s);
        note();
    }
    const std::vector<Use> &uses() const { return m_uses; }

private:
    void note()
    {
        const auto host = speechHostOf(m_process);
        m_uses.push_back({std::chrono::steady_clock::now(), cpuSecondsWithChildren(m_process),
            memoryOf(m_process).residentMB, host ? memoryOf(*host).residentMB : 0});
    }

    pid_t m_process;
    QTimer m_timer;
    std::vector<Use> m_uses;
};

struct NamedPart
{
    QString title;
    SessionPart part;
    LiveScores scores;
    std::vector<Use> uses;
};

QString cpuShare(const std::vector<Use> &uses)
{
    const std::chrono::duration<double> passed = uses.back().at - uses.front().at;
    const double used = uses.back().cpuSeconds - uses.front().cpuSeconds;
    return QStringLiteral("%1 %").arg(100 * used / passed.count(), 0, 'f', 1);
}

QString memoryRange(const std::vector<Use> &uses, double Use::*memory)
{
    const auto [least, most] = std::minmax_element(
        uses.begin(), uses.end(), [memory](const Use &a, const Use &b) { return a.*memory < b.*memory; });
    return QStringLiteral("%1 to %2 MB").arg((*least).*memory, 0, 'f', 0).arg((*most).*memory, 0, 'f', 0);
}

TextTable tableOf(const std::vector<NamedPart> &parts)
{
    QStringList heads {QString()};
    for (const NamedPart &part : parts) {
        heads.append(part.title);
    }
    TextTable table(heads);
    const auto add = [&](const QString &label, const std::function<QString(const NamedPart &)> &cell) {
        QStringList row {label};
        std::transform(parts.begin(), parts.end(), std::back_inserter(row), cell);
        table.add(row);
    };
    add(QStringLiteral("Recordings played, without any text"), [](const NamedPart &part) {
        return QStringLiteral("%1, %2").arg(part.scores.recordings).arg(part.scores.missed);
    });
    add(QStringLiteral("First text after speech begins, median / 95th"),
        [](const NamedPart &part) { return delays(part.scores.firstDelays, part.scores.recordings); });
    add(QStringLiteral("Final text after speech ends, median / 95th"),
        [](const NamedPart &part) { return delays(part.scores.finalDelays, part.scores.recordings); });
    add(QStringLiteral("Normalized erasure"),
        [](const NamedPart &part) { return QString::number(part.scores.restlessness.erasure(), 'f', 2); });
    add(QStringLiteral("Lines opened, finished"), [](const NamedPart &part) {
        return QStringLiteral("%1, %2")
            .arg(part.scores.restlessness.opened)
            .arg(part.scores.restlessness.finished);
    });
    add(QStringLiteral("Share of a processor"), [](const NamedPart &part) { return cpuShare(part.uses); });
    add(QStringLiteral("Resident memory: program"),
        [](const NamedPart &part) { return memoryRange(part.uses, &Use::programMB); });
    add(QStringLiteral("Resident memory: speech host"),
        [](const NamedPart &part) { return memoryRange(part.uses, &Use::hostMB); });
    return table;
}

} // namespace

TextTable soak(const SoundServer &server, const ProgramUnderTest &program,
    const test::SpokenRecordings &speech, double minutes, unsigned seed)
{
    const Playlist playlist = Playlist::shuffled(speech, minutes, seed);
    tellProgress(QStringLiteral("%1: %2 minutes of sound")
                     .arg(titleOf(program.engine()))
                     .arg(playlist.seconds() / 60, 0, 'f', 1));
    PlayedSession session(server, program, speech.language);
    session.play(playlist);
    const UseRecord record(session.processId());
    session.waitUntilSettled();
    program.requireEngine(session.processId());
    const std::vector<Use> uses = record.uses();
    session.end();

    const test::TraceTime begin = uses.front().at;
    const test::TraceTime end = uses.back().at;
    const auto edge = std::min<test::TraceTime::duration>(5min, (end - begin) / 2);
    const QString length = QStringLiteral("%1 min").arg(
        std::chrono::duration<double, std::ratio<60>>(edge).count(), 0, 'f', 1);
    std::vector<NamedPart> parts {
        {QStringLiteral("first ") + length, {test::TraceTime::min(), begin + edge}, {}, {}},
        {QStringLiteral("last ") + length, {end - edge, test::TraceTime::max()}, {}, {}},
        {QStringLiteral("all"), {}, {}, {}},
    };
    for (NamedPart &part : parts) {
        part.scores = liveScores(session, playlist, speech.language, part.part);
        std::copy_if(uses.begin(), uses.end(), std::back_inserter(part.uses),
            [&part](const Use &use) { return part.part.contains(use.at); });
    }
    TextTable table = tableOf(parts);
    const WordCount words = countWords(playlist.transcript(), session.trace().finalText(), speech.language);
    table.add({QStringLiteral("Word errors"), QString(), QString(), errorRate(words)});
    return table;
}

} // namespace lumaphone::bench
