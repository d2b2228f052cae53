#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

namespace lumaphone {

/// A calm display of how loud passing sound is: it rises at once, falls step by step, and changes only a few
/// times a second.
class SoundMeter final : public QObject
{
    Q_OBJECT

public:
    static constexpr int steps = 6;
    static constexpr std::chrono::milliseconds interval {120};

    explicit SoundMeter(QObject *parent = nullptr);

    /// From 0 to `steps`.
    int level() const { return m_level; }
    /// A buffer of that peak has passed.
    void note(double peak);
    /// Nothing is heard any more.
    void rest();
    /// The step of a peak: none for what can hardly be heard.
    static int stepOf(double peak);

signals:
    void levelChanged();

private:
    void advance();
    void setLevel(int level);

    QTimer m_timer;
    double m_loudest = 0; ///< since the last change
    int m_level = 0;
};

} // namespace lumaphone
