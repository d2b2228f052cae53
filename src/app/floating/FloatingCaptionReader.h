#pragma once

#include "app/floating/ReadingPage.h"
#include "app/floating/ReadingRows.h"
#include "platform/Clock.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace lumaphone {

class LumaphoneSettings;
class SystemAudioCaptureController;

/// What somebody reads on the panel, in time: the page of the session's lines, and whether the captions have
/// left because nobody speaks. Main thread.
class FloatingCaptionReader final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The panel's controller has one.")
    Q_PROPERTY(lumaphone::ReadingRows *rows READ rows CONSTANT)
    Q_PROPERTY(bool isOn READ isOn NOTIFY isOnChanged)
    Q_PROPERTY(bool isHeld READ isHeld NOTIFY pageChanged)
    Q_PROPERTY(int waiting READ waiting NOTIFY pageChanged)
    Q_PROPERTY(bool isQuiet READ isQuiet NOTIFY isQuietChanged)

public:
    static constexpr int mostLines = 6;

    /// The settings must outlive it. Without a clock time stands still, as in a preview.
    FloatingCaptionReader(
        LumaphoneSettings &settings, std::shared_ptr<Clock> clock, QObject *parent = nullptr);

    /// Reads the lines of that session, which outlives it.
    void observe(const SystemAudioCaptureController &session);
    /// Reads these lines, for a preview.
    void read(const std::vector<ReadingLine> &lines);
    /// The panel has been given new texts. What the program says itself stands below the lines until somebody
    /// speaks.
    void noteSpoken();
    void noteSaid(const QString &sourceText, const QString &translationText);
    /// The panel has been closed.
    void leave();

    ReadingRows *rows() { return &m_rows; }
    /// Whether the user reads several lines; otherwise the panel shows the newest caption alone.
    bool isOn() const;
    /// Whether the page stays as it is while new lines wait.
    bool isHeld() const { return m_page.isHeld(); }
    int waiting() const { return m_page.waiting(); }
    /// Whether what was said last was long enough ago for it to leave the panel.
    bool isQuiet() const { return m_isQuiet; }

    Q_INVOKABLE void toggleHold();
    Q_INVOKABLE void follow();
    /// By eighths of a degree, as the toolkit counts; away from the user goes back.
    Q_INVOKABLE void turnWheel(int angle);

signals:
    void isOnChanged();
    void pageChanged();
    void isQuietChanged();

private:
    ReadingPage::Time now() const { return m_clock ? m_clock->monotonic() : ReadingPage::Time(0); }
    void readSettings();
    void update(const SystemAudioCaptureController &session, qsizetype index);
    /// Something new can be read.
    void touch();
    void refresh();
    std::vector<ReadingPage::Row> shownRows() const;
    std::optional<ReadingPage::Time> quietTime() const;
    void wakeAt(std::optional<ReadingPage::Time> time);

    LumaphoneSettings &m_settings;
    const std::shared_ptr<Clock> m_clock;
    ReadingPage m_page;
    ReadingRows m_rows {this};
    std::optional<ReadingLine> m_notice;
    int m_wheel = 0; ///< what has been turned since the last line
    bool m_isQuiet = false;
    ReadingPage::Time m_touched {0};
    std::optional<ReadingPage::Time> m_nextWake;
};

} // namespace lumaphone
