#pragma once

#include "app/live/SoundMeter.h"
#include "app/live/SoundWatch.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace lumaphone {

class SoundCheck;
class SystemAudioCaptureController;

/// The test of sound before a session: what would be listened to, and whether anything comes from there. It
/// listens while it is open and never beside a session. Main thread.
class SoundTestModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model.")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    Q_PROPERTY(QString device READ device NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool hasHeard READ hasHeard NOTIFY changed)
    Q_PROPERTY(bool isWithoutSound READ isWithoutSound NOTIFY changed)
    Q_PROPERTY(bool hasFailed READ hasFailed NOTIFY changed)
    Q_PROPERTY(int level READ level NOTIFY levelChanged)
    Q_PROPERTY(int highestLevel READ highestLevel CONSTANT)

public:
    static constexpr std::chrono::milliseconds defaultPatience = std::chrono::seconds(4);

    /// The controller outlives the model. `patience` with silence.
    SoundTestModel(SystemAudioCaptureController &controller, std::unique_ptr<SoundCheck> check,
        std::chrono::milliseconds patience = defaultPatience, QObject *parent = nullptr);
    ~SoundTestModel() override;

    bool isOpen() const { return m_isOpen; }
    /// The name of the output or microphone; what kind it is until that is known.
    QString device() const;
    QString symbol() const;
    /// What has been found, and what to do.
    QString message() const;
    /// Whether something is heard now.
    bool hasHeard() const { return m_hasHeard && !m_watch.isWithoutSound(); }
    bool isWithoutSound() const { return m_isOpen && !hasFailed() && m_watch.isWithoutSound(); }
    bool hasFailed() const { return !m_failure.isEmpty(); }
    int level() const { return m_meter.level(); }
    static int highestLevel() { return SoundMeter::steps; }

    /// Listens to the source that is chosen, until close() or until a session starts; not while one runs.
    Q_INVOKABLE void open();
    /// When it returns, nothing is recorded any more.
    Q_INVOKABLE void close();

signals:
    void changed();
    void levelChanged();
    /// A session has ended the test.
    void ended();

private:
    bool isSessionBusy() const;
    void listen();
    void endForSession();

    SystemAudioCaptureController &m_controller;
    const std::unique_ptr<SoundCheck> m_check;
    SoundMeter m_meter;
    SoundWatch m_watch;
    bool m_isOpen = false;
    bool m_hasHeard = false;
    QString m_device;
    QString m_failure;
};

} // namespace lumaphone
