#include "support/PrivateSessionBus.h"

#include "base/AtomicFile.h"
#include "support/OwnedProcess.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

namespace lumaphone::test {

namespace {

const char variable[] = "DBUS_SESSION_BUS_ADDRESS";

// No folder with services: nothing starts by itself.
const char configuration[]
    = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%FOLDER%</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateSessionBus::PrivateSessionBus()
    : m_daemon(makeOwnedProcess())
    , m_formerAddress(qgetenv(variable))
{
    const QString file = m_folder.filePath(QStringLiteral("bus.conf"));
    replaceFile(
        file, QByteArray(configuration).replace("%FOLDER%", m_folder.path().toUtf8()), Durability::renamed);
    m_daemon->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_daemon->start(QStringLiteral("dbus-daemon"),
        {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
            QStringLiteral("--config-file=") + file});
    awaitProcess(
        *m_daemon, QStringLiteral("The private bus does not start"),
        [this] { return m_daemon->canReadLine(); }, [this] { return m_daemon->readAll(); });
    m_address = QString::fromUtf8(m_daemon->readLine().trimmed());
    qputenv(variable, m_address.toUtf8());
}

PrivateSessionBus::~PrivateSessionBus()
{
    qputenv(variable, m_formerAddress);
    kill();
}

void PrivateSessionBus::kill()
{
    endProcess(*m_daemon);
}

bool PrivateSessionBus::isRunning() const
{
    return m_daemon->state() == QProcess::Running && !m_address.isEmpty();
}

bool PrivateSessionBus::hasService(const QString &name) const
{
    const auto *bus = QDBusConnection::sessionBus().interface();
    return bus && bus->isServiceRegistered(name);
}

} // namespace lumaphone::test
