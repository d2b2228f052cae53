#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

namespace lumaphone {

/// Tells when a running session has heard nothing for a while, so that nobody waits before a silent window.
class SoundWatch final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultPatience = std::chrono::seconds(6);

    explicit SoundWatch(std::chrono::milliseconds patience = defaultPatience, QObject *parent = nullptr);

    bool isWithoutSound() const { return m_isWithoutSound; }
    void setRunning(bool isRunning);
    void soundArrived();

signals:
    void isWithoutSoundChanged();

private:
    void setWithoutSound(bool isWithoutSound);

    QTimer m_timer;
    bool m_isWithoutSound = false;
};

} // namespace lumaphone
