#include "support/speech-scores/CaptionMeasures.h"

#include <algorithm>

namespace lumaphone::test {

namespace {

/// A pause after which every engine has ended what was said before.
constexpr std::chrono::milliseconds clearPause(1500);

double seconds(TraceTime::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

qsizetype takenBack(const QStringList &before, const QStringList &now)
{
    return before.end() - std::mismatch(before.begin(), before.end(), now.begin(), now.end()).first;
}

/// A change of any line.
struct Change
{
    TraceTime at;
    bool isFinal = false;
};

std::vector<Change> changesWithin(const std::vector<CaptionHistory> &lines, TraceTime begin, TraceTime end)
{
    std::vector<Change> changes;
    for (const CaptionHistory &line : lines) {
        for (const CaptionChange &change : line.changes) {
            if (change.at >= begin && change.at < end) {
                changes.push_back({change.at, change.isFinal});
            }
        }
    }
    std::stable_sort(
        changes.begin(), changes.end(), [](const Change &a, const Change &b) { return a.at < b.at; });
    return changes;
}

} // namespace

double Restlessness::erasure() const
{
    return static_cast<double>(erased) / static_cast<double>(std::max<qsizetype>(1, final));
}

double Restlessness::openedPerFinished() const
{
    return static_cast<double>(opened) / static_cast<double>(std::max<qsizetype>(1, finished));
}

Restlessness &Restlessness::operator+=(const Restlessness &other)
{
    opened += other.opened;
    finished += other.finished;
    erased += other.erased;
    final += other.final;
    return *this;
}

Restlessness restlessness(
    const std::vector<CaptionHistory> &lines, const std::function<QStringList(const QString &)> &words)
{
    Restlessness sum;
    for (const CaptionHistory &line : lines) {
        QStringList shown;
        for (const CaptionChange &change : line.changes) {
            const QStringList now = words(change.text);
            sum.erased += takenBack(shown, now);
            shown = now;
        }
        ++sum.opened;
        if (line.isFinished()) {
            ++sum.finished;
            sum.final += shown.size();
        } else {
            sum.erased += shown.size();
        }
    }
    return sum;
}

std::vector<CaptionDelay> captionDelays(
    const std::vector<CaptionHistory> &lines, const std::vector<SpokenStretch> &stretches)
{
    std::vector<CaptionDelay> delays(stretches.size());
    bool isSettled = true;
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        const SpokenStretch &spoken = stretches[i];
        const bool isLast = i + 1 == stretches.size();
        const TraceTime next = isLast ? TraceTime::max() : stretches[i + 1].begin;
        const bool beginsAlone = i == 0 || spoken.begin - stretches[i - 1].end >= clearPause;
        const bool endsAlone = isLast || next - spoken.end >= clearPause;
        const std::vector<Change> changes = changesWithin(lines, spoken.begin, next);
        if (changes.empty()) {
            continue;
        }
        delays[i].hasText = true;
        if (beginsAlone && isSettled) {
            delays[i].first = seconds(changes.front().at - spoken.begin);
        }
        isSettled = changes.back().isFinal;
        if (endsAlone && isSettled) {
            delays[i].final = seconds(changes.back().at - spoken.end);
        }
    }
    return delays;
}

} // namespace lumaphone::test
