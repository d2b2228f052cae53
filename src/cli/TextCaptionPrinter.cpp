#include "cli/TextCaptionPrinter.h"

#include "cli/TerminalText.h"

#include <QStringList>

#include <algorithm>

namespace lumaphone::cli {

namespace {

constexpr auto dim = "\x1b[2m";
constexpr auto plain = "\x1b[0m";
constexpr int mostOpenRows = 6;
const QString translationIndent = QStringLiteral("  ");

} // namespace

TextCaptionPrinter::TextCaptionPrinter(
    CommandStreams streams, std::function<std::optional<int>()> terminalColumns)
    : m_streams(std::move(streams))
    , m_terminalColumns(std::move(terminalColumns))
{
}

void TextCaptionPrinter::lineChanged(const LumaphoneCaptionLine &line, TranslationState translation)
{
    const auto held = std::find_if(m_held.begin(), m_held.end(),
        [&line](const HeldLine &candidate) { return candidate.line.id == line.id; });
    if (held != m_held.end()) {
        *held = {line, translation};
    } else {
        // A line that was given up for a newer one before it was final never will be.
        std::erase_if(m_held, [](const HeldLine &older) { return !older.line.isFinal; });
        m_held.push_back({line, translation});
    }
    m_status.clear();
    printReady();
}

void TextCaptionPrinter::statusChanged(const QString &status)
{
    // A status is news only while there is nothing to read yet.
    if (m_held.empty() && m_terminalColumns()) {
        m_status = status;
        write({});
    }
}

void TextCaptionPrinter::failed(const QString &message)
{
    m_status.clear();
    write({});
    m_streams.complain(message);
}

void TextCaptionPrinter::finish()
{
    QString lines;
    for (const HeldLine &held : m_held) {
        lines += held.line.isFinal ? finished(held) : QString();
    }
    m_held.clear();
    m_status.clear();
    write(lines);
}

bool TextCaptionPrinter::isReady(const HeldLine &held)
{
    return held.line.isFinal && held.translation != TranslationState::pending;
}

bool TextCaptionPrinter::showsTranslation(const HeldLine &held)
{
    return held.translation == TranslationState::arrived && held.line.translatedText != held.line.sourceText;
}

void TextCaptionPrinter::printReady()
{
    QString lines;
    while (!m_held.empty() && isReady(m_held.front())) {
        lines += finished(m_held.front());
        m_held.pop_front();
    }
    write(lines);
}

QString TextCaptionPrinter::finished(const HeldLine &held)
{
    QString lines = singleRow(held.line.sourceText) + QLatin1Char('\n');
    if (showsTranslation(held)) {
        lines += translationIndent + singleRow(held.line.translatedText) + QLatin1Char('\n');
    }
    return lines;
}

void TextCaptionPrinter::write(const QString &finishedLines)
{
    const std::optional<int> columns = m_terminalColumns();
    QString output = removeOpenRows() + finishedLines;
    m_openRows = 0;
    if (columns) {
        output += openRows(*columns);
    }
    if (!output.isEmpty()) {
        m_streams.out(output.toUtf8());
    }
}

QString TextCaptionPrinter::removeOpenRows() const
{
    if (m_openRows == 0) {
        return {};
    }
    const QString up = m_openRows > 1 ? QStringLiteral("\x1b[%1A").arg(m_openRows - 1) : QString();
    return QLatin1Char('\r') + up + QStringLiteral("\x1b[J");
}

QString TextCaptionPrinter::openRows(int columns)
{
    // A row that fills the last column would wrap on some terminals and spoil the count of rows.
    const int width = std::max(columns - 1, 1);
    QStringList rows;
    for (const HeldLine &held : m_held) {
        rows.append(tailFitting(singleRow(held.line.sourceText), width));
        if (showsTranslation(held)) {
            rows.append(translationIndent + tailFitting(singleRow(held.line.translatedText), width - 2));
        }
    }
    if (rows.isEmpty() && !m_status.isEmpty()) {
        rows.append(tailFitting(singleRow(m_status), width));
    }
    rows = rows.mid(std::max<qsizetype>(0, rows.size() - mostOpenRows));
    m_openRows = static_cast<int>(rows.size());
    if (rows.isEmpty()) {
        return {};
    }
    return QLatin1String(dim) + rows.join(QLatin1Char('\n')) + QLatin1String(plain);
}

} // namespace lumaphone::cli
