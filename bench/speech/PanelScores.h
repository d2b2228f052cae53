#pragma once

#include "support/speech-scores/CaptionTrace.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace lumaphone::bench {

/// What somebody saw on the caption panel.
struct PanelScores
{
    qsizetype erased = 0; ///< words that were shown and taken back while their line stood
    qsizetype final = 0; ///< words of the lines that were shown finished
    qsizetype rewritten = 0; ///< finished lines whose words changed while they stood
    std::vector<double> stood; ///< seconds from the finished text of a line to its end on the panel

    /// Normalized erasure.
    double erasure() const;
    /// None where no finished line has left.
    std::optional<double> shortest() const;
};

using WordSplitter = std::function<QStringList(const QString &)>;

/// The panel as it opens: the newest text alone, as soon as it comes.
PanelScores newestCaptionScores(const std::vector<test::CaptionHistory> &lines, const WordSplitter &words);
/// The panel of somebody who reads so many lines.
PanelScores readingPageScores(
    const std::vector<test::CaptionHistory> &lines, int lineCount, const WordSplitter &words);

} // namespace lumaphone::bench
