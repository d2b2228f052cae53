#include "app/live/SoundTestModel.h"

#include "app/live/LiveTexts.h"
#include "session/SoundCheck.h"
#include "session/SystemAudioCaptureController.h"

namespace lumaphone {

SoundTestModel::SoundTestModel(SystemAudioCaptureController &controller, std::unique_ptr<SoundCheck> check,
    std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent)
    , m_controller(controller)
    , m_check(std::move(check))
    , m_watch(patience)
{
    connect(m_check.get(), &SoundCheck::deviceChanged, this, [this](const QString &name) {
        m_device = name;
        emit changed();
    });
    connect(m_check.get(), &SoundCheck::measured, this, [this](double peak) {
        m_meter.note(peak);
        if (SoundMeter::stepOf(peak) > 0) {
            m_watch.soundArrived();
            if (!m_hasHeard) {
                m_hasHeard = true;
                emit changed();
            }
        }
    });
    connect(m_check.get(), &SoundCheck::failed, this, [this](const QString &message) {
        m_failure = message;
        m_meter.rest();
        m_watch.setRunning(false);
        emit changed();
    });
    connect(&m_watch, &SoundWatch::isWithoutSoundChanged, this, &SoundTestModel::changed);
    connect(&m_meter, &SoundMeter::levelChanged, this, &SoundTestModel::levelChanged);
    using Controller = SystemAudioCaptureController;
    connect(&controller, &Controller::isStartingChanged, this, &SoundTestModel::endForSession);
    connect(&controller, &Controller::isRunningChanged, this, &SoundTestModel::endForSession);
    connect(&controller, &Controller::audioInputSourceChanged, this, [this] {
        if (m_isOpen) {
            listen();
        }
        emit changed();
    });
}

SoundTestModel::~SoundTestModel() = default;

QString SoundTestModel::device() const
{
    return m_device.isEmpty() ? title(m_controller.audioInputSource()) : m_device;
}

QString SoundTestModel::symbol() const
{
    return symbolName(m_controller.audioInputSource());
}

QString SoundTestModel::message() const
{
    if (hasFailed()) {
        return m_failure;
    }
    if (hasHeard()) {
        return livetexts::soundHeard();
    }
    return isWithoutSound() ? livetexts::withoutSoundText(m_controller.audioInputSource())
                            : livetexts::soundWanted(m_controller.audioInputSource());
}

void SoundTestModel::open()
{
    if (!isSessionBusy()) {
        m_isOpen = true;
        listen();
        emit changed();
    }
}

void SoundTestModel::close()
{
    m_check->stop();
    m_meter.rest();
    m_watch.setRunning(false);
    m_isOpen = false;
    emit changed();
}

bool SoundTestModel::isSessionBusy() const
{
    return m_controller.isRunning() || m_controller.isStarting();
}

void SoundTestModel::listen()
{
    m_device.clear();
    m_failure.clear();
    m_hasHeard = false;
    m_meter.rest();
    m_watch.setRunning(true);
    m_check->start(m_controller.audioInputSource());
}

void SoundTestModel::endForSession()
{
    if (m_isOpen && isSessionBusy()) {
        close();
        emit ended();
    }
}

} // namespace lumaphone
