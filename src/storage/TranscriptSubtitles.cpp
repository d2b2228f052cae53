#include "storage/TranscriptSubtitles.h"

#include "base/Text.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <vector>

namespace lumaphone {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds longestCue = 7s;

struct Cue
{
    milliseconds start;
    milliseconds end;
    QString text;
};

/// The lines' beginnings counted from the session's, none before it and none before the line above: the wall
/// clock may have been set back.
std::vector<milliseconds> starts(const TranscriptDocument &document)
{
    std::vector<milliseconds> result;
    const QDateTime origin = document.metadata.startedAt.value_or(document.lines.constFirst().createdAt);
    milliseconds latest = 0ms;
    for (const SavedTranscriptLine &line : document.lines) {
        latest = std::max(latest, milliseconds(origin.msecsTo(line.createdAt)));
        result.push_back(latest);
    }
    return result;
}

/// When the last `count` lines, which began together at `start`, shall have ended.
milliseconds sessionEnd(const TranscriptDocument &document, milliseconds start, std::size_t count)
{
    const auto latest = start + longestCue * static_cast<milliseconds::rep>(count);
    if (!document.metadata.startedAt || !document.metadata.endedAt) {
        return latest;
    }
    const milliseconds end(document.metadata.startedAt->msecsTo(*document.metadata.endedAt));
    return end > start ? std::min(end, latest) : latest;
}

/// One cue per line, in order: none is empty and none overlaps another.
std::vector<Cue> timedCues(const TranscriptDocument &document)
{
    std::vector<Cue> cues;
    if (document.lines.isEmpty()) {
        return cues;
    }
    const std::vector<milliseconds> begin = starts(document);
    for (std::size_t first = 0; first < begin.size();) {
        std::size_t next = first + 1;
        while (next < begin.size() && begin[next] == begin[first]) {
            ++next;
        }
        const std::size_t count = next - first;
        const milliseconds until
            = next < begin.size() ? begin[next] : sessionEnd(document, begin[first], count);
        const milliseconds share = (until - begin[first]) / static_cast<milliseconds::rep>(count);
        for (std::size_t i = 0; i < count; ++i) {
            const milliseconds start = begin[first] + share * static_cast<milliseconds::rep>(i);
            cues.push_back({start, start + std::min(share, longestCue), QString()});
        }
        first = next;
    }
    return cues;
}

/// Lines of text that hold nothing a subtitle file would take for its own: no empty line, no control
/// character.
QStringList cueLines(const QString &raw)
{
    static const QRegularExpression lineBreak(QStringLiteral("[\\r\\n\\x0b\\x0c\\x{85}\\x{2028}\\x{2029}]+"));
    QStringList lines;
    for (QString line : raw.split(lineBreak)) {
        line.removeIf(
            [](QChar unit) { return unit.category() == QChar::Other_Control && unit != QLatin1Char('\t'); });
        line = text::trimmed(line);
        if (!line.isEmpty()) {
            lines.append(line);
        }
    }
    return lines;
}

QString cueText(const SavedTranscriptLine &line, TranscriptTextChoice text)
{
    switch (text) {
    case TranscriptTextChoice::source:
        return cueLines(line.sourceText).join(QLatin1Char('\n'));
    case TranscriptTextChoice::translation:
        return cueLines(line.translatedText).join(QLatin1Char('\n'));
    case TranscriptTextChoice::bilingual:
        return (cueLines(line.sourceText) + cueLines(line.translatedText)).join(QLatin1Char('\n'));
    }
    Q_UNREACHABLE();
}

std::vector<Cue> cues(const TranscriptDocument &document, TranscriptTextChoice text)
{
    std::vector<Cue> result = timedCues(document);
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i].text = cueText(document.lines[static_cast<qsizetype>(i)], text);
    }
    std::erase_if(result, [](const Cue &cue) { return cue.text.isEmpty(); });
    return result;
}

QString timeText(milliseconds time, QChar decimalMark)
{
    const auto part = [&time](milliseconds unit, milliseconds whole, int width) {
        return QStringLiteral("%1").arg(
            (whole == 0ms ? time : time % whole) / unit, width, 10, QLatin1Char('0'));
    };
    return part(1h, 0ms, 2) + QLatin1Char(':') + part(1min, 1h, 2) + QLatin1Char(':') + part(1s, 1min, 2)
        + decimalMark + part(1ms, 1s, 3);
}

QString timesText(const Cue &cue, QChar decimalMark)
{
    return timeText(cue.start, decimalMark) + QStringLiteral(" --> ") + timeText(cue.end, decimalMark)
        + QLatin1Char('\n');
}

} // namespace

QString srtText(const TranscriptDocument &document, TranscriptTextChoice text)
{
    QString result;
    int number = 0;
    for (const Cue &cue : cues(document, text)) {
        QString cueText = cue.text;
        cueText.replace(QStringLiteral("-->"), QStringLiteral("→"));
        result += QString::number(++number) + QLatin1Char('\n') + timesText(cue, QLatin1Char(',')) + cueText
            + QStringLiteral("\n\n");
    }
    return result;
}

QString vttText(const TranscriptDocument &document, TranscriptTextChoice text)
{
    QString result = QStringLiteral("WEBVTT\n\n");
    for (const Cue &cue : cues(document, text)) {
        result += timesText(cue, QLatin1Char('.'))
            + cue.text.toHtmlEscaped().replace(QStringLiteral("&quot;"), QStringLiteral("\""))
            + QStringLiteral("\n\n");
    }
    return result;
}

} // namespace lumaphone
