#include "bench/speech/LiveScores.h"

#include "base/Text.h"
#include "support/speech-scores/WordSpelling.h"

#include <QFileInfo>

#include <algorithm>
#include <numeric>

namespace lumaphone::bench {

namespace {

QString secondsText(const std::optional<double> &seconds)
{
    return seconds ? QStringLiteral("%1 s").arg(*seconds, 0, 'f', 2) : QStringLiteral("-");
}

} // namespace

LiveScores liveScores(const PlayedSession &session, const Playlist &playlist,
    AppleSystemSpeechLanguage language, SessionPart part)
{
    const std::vector<HeardStretch> heard = session.stretches(playlist);
    std::vector<test::SpokenStretch> spoken(heard.size());
    std::transform(heard.begin(), heard.end(), spoken.begin(),
        [](const HeardStretch &stretch) { return stretch.spoken; });
    const std::vector<test::CaptionDelay> delays = test::captionDelays(session.trace().lines(), spoken);
    LiveScores scores;
    for (std::size_t i = 0; i < delays.size(); ++i) {
        if (part.contains(spoken[i].begin)) {
            const QString name = QFileInfo(playlist.places()[i].recording->path).completeBaseName();
            scores.add(name, delays[i], heard[i].isWhole);
        }
    }
    std::vector<test::CaptionHistory> lines = session.trace().lines();
    std::erase_if(
        lines, [&part](const test::CaptionHistory &line) { return !part.contains(line.appeared()); });
    const auto words = [language](const QString &text) {
        return test::spelledWords(text, language);
    };
    scores.restlessness = test::restlessness(lines, words);
    scores.newestCaption = newestCaptionScores(lines, words);
    scores.readingPage = readingPageScores(lines, LiveScores::readLines, words);
    scores.restlessnessAsWritten = test::restlessness(lines, text::splitAtWhiteSpace);
    return scores;
}

SetCounts playedWords(
    const PlayedSession &session, const Playlist &playlist, AppleSystemSpeechLanguage language)
{
    const QStringList heard = test::spelledWords(session.trace().finalText(), language);
    const QList<qsizetype> errors
        = test::errorsOfWords(test::spelledWords(playlist.transcript(), language), heard);
    SetCounts counts;
    auto next = errors.begin();
    for (const Playlist::Place &place : playlist.places()) {
        const QString &set = place.recording->set;
        auto count = std::find_if(
            counts.begin(), counts.end(), [&set](const auto &each) { return each.first == set; });
        if (count == counts.end()) {
            count = counts.insert(counts.end(), {set, {}});
        }
        const auto end = next + test::spelledWords(place.recording->transcript, language).size();
        count->second += {end - next, std::accumulate(next, end, qsizetype(0))};
        next = end;
    }
    return counts;
}

void LiveScores::add(const QString &recording, const test::CaptionDelay &delay, bool isWhole)
{
    delayTexts.append(QStringLiteral("%1: first %2, final %3%4")
                          .arg(recording, secondsText(delay.first), secondsText(delay.final),
                              isWhole ? QString() : QStringLiteral(", not played well")));
    ++recordings;
    missed += delay.hasText ? 0 : 1;
    if (!isWhole) {
        ++disturbed;
        return;
    }
    if (delay.first) {
        firstDelays.push_back(*delay.first);
    }
    if (delay.final) {
        finalDelays.push_back(*delay.final);
    }
}

} // namespace lumaphone::bench
