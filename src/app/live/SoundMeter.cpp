#include "app/live/SoundMeter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumaphone {

namespace {

/// Where the first step begins.
constexpr double quietestDecibels = -54;

} // namespace

SoundMeter::SoundMeter(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &SoundMeter::advance);
}

void SoundMeter::note(double peak)
{
    m_loudest = std::max(m_loudest, peak);
    if (!m_timer.isActive() && stepOf(m_loudest) > 0) {
        advance();
        m_timer.start();
    }
}

void SoundMeter::rest()
{
    m_timer.stop();
    m_loudest = 0;
    setLevel(0);
}

int SoundMeter::stepOf(double peak)
{
    if (peak <= 0) {
        return 0;
    }
    const double part = 1 - 20 * std::log10(peak) / quietestDecibels;
    return std::clamp(int(std::ceil(part * steps)), 0, steps);
}

void SoundMeter::advance()
{
    setLevel(std::max(stepOf(std::exchange(m_loudest, 0)), m_level - 1));
    if (m_level == 0) {
        m_timer.stop();
    }
}

void SoundMeter::setLevel(int level)
{
    if (m_level != level) {
        m_level = level;
        emit levelChanged();
    }
}

} // namespace lumaphone
