#include "app/floating/FloatingCaptionReader.h"

#include "app/floating/ReadingPace.h"
#include "session/SystemAudioCaptureController.h"
#include "storage/LumaphoneSettings.h"

#include <QCoroTask>

#include <algorithm>
#include <limits>
#include <utility>

namespace lumaphone {

namespace {

ReadingLine readingLine(const LumaphoneCaptionLine &line)
{
    return {line.id, line.sourceText, rawValue(line.sourceLanguage),
        isPending(line) ? QString() : line.translatedText, line.isFinal};
}

std::vector<ReadingLine> readingLines(const SystemAudioCaptureController &session)
{
    std::vector<ReadingLine> lines;
    for (const LumaphoneCaptionLine &line : session.captionLines()) {
        lines.push_back(readingLine(line));
    }
    return lines;
}

} // namespace

FloatingCaptionReader::FloatingCaptionReader(
    LumaphoneSettings &settings, std::shared_ptr<Clock> clock, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_clock(std::move(clock))
{
    using Settings = LumaphoneSettings;
    for (const auto changed : {&Settings::captionLinesChanged, &Settings::captionDisplayModeChanged,
             &Settings::captionSilenceChanged}) {
        connect(&settings, changed, this, &FloatingCaptionReader::readSettings);
    }
    readSettings();
}

void FloatingCaptionReader::observe(const SystemAudioCaptureController &session)
{
    using Session = SystemAudioCaptureController;
    for (const auto changed : {&Session::lineInserted, &Session::lineChanged}) {
        connect(&session, changed, this, [this, &session](qsizetype index) { update(session, index); });
    }
    connect(&session, &Session::linesReset, this, [this, &session] { read(readingLines(session)); });
    read(readingLines(session));
}

void FloatingCaptionReader::read(const std::vector<ReadingLine> &lines)
{
    m_page.reset(lines, now());
    touch();
}

void FloatingCaptionReader::update(const SystemAudioCaptureController &session, qsizetype index)
{
    m_page.update(readingLine(session.captionLines().at(index)), now());
    touch();
}

void FloatingCaptionReader::noteSpoken()
{
    m_notice.reset();
    touch();
}

void FloatingCaptionReader::noteSaid(const QString &sourceText, const QString &translationText)
{
    m_notice
        = ReadingLine {.id = {}, .source = sourceText, .sourceLanguage = {}, .translation = translationText};
    touch();
}

void FloatingCaptionReader::leave()
{
    m_notice.reset();
    m_page.follow(now());
    touch();
}

bool FloatingCaptionReader::isOn() const
{
    return m_settings.captionLines() >= 1;
}

void FloatingCaptionReader::toggleHold()
{
    if (isHeld()) {
        follow();
    } else {
        m_page.hold();
        refresh();
    }
}

void FloatingCaptionReader::follow()
{
    m_page.follow(now());
    touch();
}

void FloatingCaptionReader::turnWheel(int angle)
{
    constexpr int angleOfLine = 120;
    m_wheel += angle;
    if (const int lines = m_wheel / angleOfLine; lines != 0) {
        m_wheel -= lines * angleOfLine;
        m_page.scroll(-lines, now());
        refresh();
    }
}

void FloatingCaptionReader::readSettings()
{
    m_page.setSize(std::min(mostLines, static_cast<int>(m_settings.captionLines())));
    m_page.setDisplayMode(m_settings.captionDisplayMode());
    emit isOnChanged();
    refresh();
}

void FloatingCaptionReader::touch()
{
    m_touched = now();
    refresh();
}

void FloatingCaptionReader::refresh()
{
    const std::optional<ReadingPage::Time> nextLine = m_page.advance(now());
    m_rows.show(shownRows());
    emit pageChanged();
    const std::optional<ReadingPage::Time> silence = quietTime();
    const bool isQuiet = silence && *silence <= now();
    if (std::exchange(m_isQuiet, isQuiet) != isQuiet) {
        emit isQuietChanged();
    }
    wakeAt(nextLine);
    if (!isQuiet) {
        wakeAt(silence);
    }
}

std::vector<ReadingPage::Row> FloatingCaptionReader::shownRows() const
{
    std::vector<ReadingPage::Row> rows = m_page.rows();
    if (m_notice && !isHeld()) {
        rows.push_back({std::numeric_limits<std::size_t>::max(), *m_notice});
    }
    return rows;
}

/// When the captions leave; none if they stay.
std::optional<ReadingPage::Time> FloatingCaptionReader::quietTime() const
{
    const std::chrono::duration<double> chosen(m_settings.captionSilence());
    if (chosen.count() <= 0 || isHeld() || m_rows.rows().empty()) {
        return std::nullopt;
    }
    const ReadingLine &last = m_rows.rows().back().line;
    const QString &read = last.translation.isEmpty() ? last.source : last.translation;
    return m_touched
        + std::max(std::chrono::duration_cast<ReadingPage::Time>(chosen),
            ReadingPage::Time(readingpace::readingTime(read)));
}

void FloatingCaptionReader::wakeAt(std::optional<ReadingPage::Time> time)
{
    if (!time || !m_clock || (m_nextWake && *m_nextWake <= *time)) {
        return;
    }
    m_nextWake = time;
    QCoro::connect(m_clock->sleepFor(*time - now()), this, [this, wake = *time] {
        if (m_nextWake == wake) {
            m_nextWake.reset();
            refresh();
        }
    });
}

} // namespace lumaphone
