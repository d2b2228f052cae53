#include "bench/speech/ScorecardColumn.h"

#include "bench/speech/Statistics.h"
#include "bench/speech/Waiting.h"

#include <algorithm>
#include <functional>

namespace lumaphone::bench {

namespace {

/// What stands where there is nothing to tell.
const auto nothing = QStringLiteral("-");

QString percent(double share)
{
    return QStringLiteral("%1 %").arg(100 * share, 0, 'f', 1);
}

QString megabytes(const ProcessMemory &memory)
{
    return QStringLiteral("%1 MB (peak %2)").arg(memory.residentMB, 0, 'f', 0).arg(memory.peakMB, 0, 'f', 0);
}

QString decimal(double value)
{
    return QString::number(value, 'f', 2);
}

QString panelText(const PanelScores &panel)
{
    const std::optional<double> shortest = panel.shortest();
    return QStringLiteral("%1 / %2 (%3 rewritten)")
        .arg(decimal(panel.erasure()), shortest ? decimal(*shortest) + QStringLiteral(" s") : nothing)
        .arg(panel.rewritten);
}

/// Rows of the table, a cell for each column.
class Rows
{
public:
    explicit Rows(const std::vector<ScorecardColumn> &columns)
        : m_columns(columns)
        , m_table(heads(columns))
    {
    }

    void add(const QString &label, const std::function<QString(const ScorecardColumn &)> &cell)
    {
        QStringList row {label};
        for (const ScorecardColumn &column : m_columns) {
            row.append(cell(column));
        }
        m_table.add(row);
    }
    void addLive(const QString &label, const std::function<QString(const LiveScores &)> &cell)
    {
        add(label,
            [&cell](const ScorecardColumn &column) { return column.live ? cell(*column.live) : nothing; });
    }
    void addSteady(const QString &label, const std::function<QString(const SteadyScores &)> &cell)
    {
        add(label, [&cell](const ScorecardColumn &column) {
            return column.steady ? cell(*column.steady) : nothing;
        });
    }
    const TextTable &table() const { return m_table; }

private:
    static QStringList heads(const std::vector<ScorecardColumn> &columns)
    {
        QStringList names {QString()};
        for (const ScorecardColumn &column : columns) {
            names.append(column.title);
        }
        return names;
    }

    const std::vector<ScorecardColumn> &m_columns;
    TextTable m_table;
};

void addFileRows(Rows &rows, const SetCounts &sets)
{
    for (std::size_t i = 0; i < sets.size(); ++i) {
        rows.add(QStringLiteral("Word errors, from files: %1").arg(sets[i].first),
            [i](const ScorecardColumn &column) { return errorRate(column.files.words[i].second); });
    }
    rows.add(QStringLiteral("Word errors, from files: all"),
        [](const ScorecardColumn &column) { return errorRate(sumOf(column.files.words)); });
    rows.add(QStringLiteral("Processor for a second of a file"), [](const ScorecardColumn &column) {
        return QStringLiteral("%1 s").arg(decimal(column.files.cpuShare));
    });
    rows.add(QStringLiteral("Time for a second of a file"), [](const ScorecardColumn &column) {
        return QStringLiteral("%1 s").arg(decimal(column.files.realTimeFactor));
    });
}

void addLiveRows(Rows &rows, const SetCounts &sets)
{
    for (std::size_t i = 0; i < sets.size(); ++i) {
        rows.add(
            QStringLiteral("Word errors, played: %1").arg(sets[i].first), [i](const ScorecardColumn &column) {
                return column.live ? errorRate(column.playedWords[i].second) : nothing;
            });
    }
    rows.add(QStringLiteral("Word errors, played: all"), [](const ScorecardColumn &column) {
        return column.live ? errorRate(sumOf(column.playedWords)) : nothing;
    });
    rows.addLive(QStringLiteral("First text after speech begins, median / 95th"),
        [](const LiveScores &live) { return delays(live.firstDelays, live.recordings); });
    rows.addLive(QStringLiteral("Final text after speech ends, median / 95th"),
        [](const LiveScores &live) { return delays(live.finalDelays, live.recordings); });
    rows.addLive(QStringLiteral("Normalized erasure"),
        [](const LiveScores &live) { return decimal(live.restlessness.erasure()); });
    rows.addLive(QStringLiteral("Normalized erasure, case and marks counted"),
        [](const LiveScores &live) { return decimal(live.restlessnessAsWritten.erasure()); });
    rows.addLive(QStringLiteral("On the panel, newest caption: erasure / shortest finished line"),
        [](const LiveScores &live) { return panelText(live.newestCaption); });
    rows.addLive(QStringLiteral("On the panel, %1 lines read: erasure / shortest finished line")
                     .arg(LiveScores::readLines),
        [](const LiveScores &live) { return panelText(live.readingPage); });
    rows.addLive(QStringLiteral("Lines opened per finished line"), [](const LiveScores &live) {
        return QStringLiteral("%1 (%2 of %3)")
            .arg(decimal(live.restlessness.openedPerFinished()))
            .arg(live.restlessness.opened)
            .arg(live.restlessness.finished);
    });
    rows.addLive(QStringLiteral("Given-up lines that stay"),
        [](const LiveScores &live) { return QString::number(live.restlessness.givenUp()); });
    rows.addLive(QStringLiteral("Recordings without any text"), [](const LiveScores &live) {
        return QStringLiteral("%1 of %2").arg(live.missed).arg(live.recordings);
    });
}

void addSteadyRows(Rows &rows)
{
    rows.addSteady(QStringLiteral("Share of a processor, speech without a pause"),
        [](const SteadyScores &steady) { return percent(steady.cpuShare); });
    rows.addSteady(QStringLiteral("Word errors, speech without a pause"),
        [](const SteadyScores &steady) { return errorRate(steady.words); });
    rows.addSteady(QStringLiteral("Resident memory: program"),
        [](const SteadyScores &steady) { return megabytes(steady.program); });
    rows.addSteady(QStringLiteral("Resident memory: speech host"),
        [](const SteadyScores &steady) { return steady.host ? megabytes(*steady.host) : nothing; });
    rows.add(QStringLiteral("From start to listening, median / slowest"), [](const ScorecardColumn &column) {
        return column.startTimes.empty() ? nothing
                                         : QStringLiteral("%1 / %2 s")
                                               .arg(decimal(percentile(column.startTimes, 0.5)),
                                                   decimal(percentile(column.startTimes, 1)));
    });
}

/// A table whose delays are not trustworthy says so.
void addDisturbances(Rows &rows, const std::vector<ScorecardColumn> &columns)
{
    const bool hasSome = std::any_of(columns.begin(), columns.end(),
        [](const ScorecardColumn &column) { return column.live && column.live->disturbed > 0; });
    if (hasSome) {
        rows.addLive(QStringLiteral("Recordings that the sound server did not play well"),
            [](const LiveScores &live) { return QString::number(live.disturbed); });
    }
}

} // namespace

QString errorRate(const WordCount &count)
{
    const double share
        = static_cast<double>(count.errors) / static_cast<double>(std::max<qsizetype>(1, count.words));
    return QStringLiteral("%1 (%2 of %3)").arg(percent(share)).arg(count.errors).arg(count.words);
}

QString delays(const std::vector<double> &values, std::size_t expected)
{
    if (values.empty()) {
        return nothing;
    }
    const QString text = QStringLiteral("%1 / %2 s")
                             .arg(decimal(percentile(values, 0.5)), decimal(percentile(values, 0.95)));
    return values.size() == expected ? text
                                     : text + QStringLiteral(" (%1 of %2)").arg(values.size()).arg(expected);
}

ScorecardColumn measure(const SoundServer &server, const ProgramUnderTest &program,
    const test::SpokenRecordings &speech, const ScorecardOptions &options)
{
    ScorecardColumn column;
    column.title = titleOf(program.engine());
    tellProgress(column.title + QStringLiteral(": from files"));
    column.files = fileScores(program, speech);
    tellProgress(column.title + QStringLiteral(": starts"));
    column.startTimes = startTimes(server, program, speech.language);
    const Playlist playlist = Playlist::spaced(speech, options.rounds);
    tellProgress(QStringLiteral("%1: %2 s of sound").arg(column.title).arg(playlist.seconds(), 0, 'f', 0));
    PlayedSession session(server, program, speech.language);
    session.play(playlist);
    session.waitUntilSettled();
    session.end();
    column.playedWords = playedWords(session, playlist, speech.language);
    column.playedText = session.trace().finalText();
    column.live = liveScores(session, playlist, speech.language);
    tellProgress(column.title + QStringLiteral(": speech without a pause"));
    column.steady = steadyScores(server, program, speech, options.steadyMinutes);
    return column;
}

TextTable scorecardTable(const std::vector<ScorecardColumn> &columns)
{
    Rows rows(columns);
    const SetCounts &sets = columns.front().files.words;
    addFileRows(rows, sets);
    addLiveRows(rows, sets);
    addSteadyRows(rows);
    addDisturbances(rows, columns);
    return rows.table();
}

} // namespace lumaphone::bench
