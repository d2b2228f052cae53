#pragma once

#include "cli/CaptionPrinter.h"

#include <deque>
#include <functional>
#include <optional>

namespace lumaphone::cli {

/// Prints finished lines one under another, each with its translation below it where there is one.
///
/// A line is printed, in the order of the session, once it is final and its translation has arrived or
/// failed. A line that the session still corrects after that is printed again; one that it gives up for a
/// newer line before it is final is not printed. On a terminal the lines that are not ready yet are shown
/// below in place; elsewhere they are not shown.
class TextCaptionPrinter final : public CaptionPrinter
{
public:
    /// `terminalColumns` is none when the output is no terminal; it is asked again for every change.
    TextCaptionPrinter(CommandStreams streams, std::function<std::optional<int>()> terminalColumns);

    void lineChanged(const LumaphoneCaptionLine &line, TranslationState translation) override;
    void statusChanged(const QString &status) override;
    void failed(const QString &message) override;
    void finish() override;

private:
    struct HeldLine
    {
        LumaphoneCaptionLine line;
        TranslationState translation;
    };

    static bool isReady(const HeldLine &held);
    static bool showsTranslation(const HeldLine &held);
    static QString finished(const HeldLine &held);
    void printReady();
    QString removeOpenRows() const;
    QString openRows(int columns);
    void write(const QString &finishedLines);

    CommandStreams m_streams;
    std::function<std::optional<int>()> m_terminalColumns;
    std::deque<HeldLine> m_held;
    QString m_status;
    int m_openRows = 0;
};

} // namespace lumaphone::cli
