#include "app/live/SoundWatch.h"

namespace lumaphone {

SoundWatch::SoundWatch(std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(patience);
    connect(&m_timer, &QTimer::timeout, this, [this] { setWithoutSound(true); });
}

void SoundWatch::setRunning(bool isRunning)
{
    setWithoutSound(false);
    if (isRunning) {
        m_timer.start();
    } else {
        m_timer.stop();
    }
}

void SoundWatch::soundArrived()
{
    setWithoutSound(false);
    m_timer.start();
}

void SoundWatch::setWithoutSound(bool isWithoutSound)
{
    if (m_isWithoutSound != isWithoutSound) {
        m_isWithoutSound = isWithoutSound;
        emit isWithoutSoundChanged();
    }
}

} // namespace lumaphone
