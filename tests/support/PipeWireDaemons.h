#pragma once

#include "support/PrivateSessionBus.h"
#include "support/SoundDaemons.h"

#include <QProcess>
#include <QStringList>

#include <memory>
#include <vector>

namespace lumaphone::test {

/// PipeWire as desktops run it: its own server, the session manager that chooses the defaults, and the server
/// that speaks PulseAudio's protocol. Brings a session bus.
class PipeWireDaemons final : public SoundDaemons
{
public:
    /// `folder` is where their files go.
    explicit PipeWireDaemons(QString folder);
    ~PipeWireDaemons() override;

    /// The programs that are needed and not installed.
    static QStringList missingPrograms();

    QString socketPath() const override;
    void start() override;
    void kill() override;
    void signal(int number) override;

private:
    void configureManager() const;
    void waitForGraph() const;
    void run(const QString &program);
    QByteArray said() const;

    QString m_folder;
    PrivateSessionBus m_bus;
    std::vector<std::unique_ptr<QProcess>> m_daemons;
};

} // namespace lumaphone::test
