#include "support/PulseAudioDaemon.h"

#include "support/OwnedProcess.h"

#include <QFile>
#include <QProcessEnvironment>

#include <csignal>
#include <utility>

namespace lumaphone::test {

PulseAudioDaemon::PulseAudioDaemon(QString folder)
    : m_folder(std::move(folder))
    , m_daemon(makeOwnedProcess())
{
}

PulseAudioDaemon::~PulseAudioDaemon()
{
    kill();
}

QString PulseAudioDaemon::socketPath() const
{
    return m_folder + QStringLiteral("/pulse.sock");
}

void PulseAudioDaemon::start()
{
    m_daemon = makeOwnedProcess();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "HOME", "PULSE_STATE_PATH"}) {
        environment.insert(QString::fromLatin1(name), m_folder);
    }
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.remove(QStringLiteral("PULSE_SERVER"));
    m_daemon->setProcessEnvironment(environment);
    m_daemon->setProcessChannelMode(QProcess::MergedChannels);
    QFile::remove(socketPath());
    m_daemon->start(QStringLiteral("pulseaudio"),
        {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--system=no"),
            QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--use-pid-file=no"),
            QStringLiteral("--realtime=no"), QStringLiteral("--high-priority=no"),
            QStringLiteral("--log-target=stderr"), QStringLiteral("--log-level=info"), QStringLiteral("-L"),
            QStringLiteral("module-native-protocol-unix socket=%1 auth-anonymous=1").arg(socketPath())});
    QByteArray said;
    awaitProcess(
        *m_daemon, QStringLiteral("The private sound server does not start"),
        [&] {
            said += m_daemon->readAll();
            return said.contains("Daemon startup complete.");
        },
        [&] { return said + m_daemon->readAll(); });
    // Nobody reads what it says from here on.
    QObject::connect(m_daemon.get(), &QProcess::readyRead, m_daemon.get(),
        [daemon = m_daemon.get()] { daemon->readAll(); });
}

void PulseAudioDaemon::kill()
{
    endProcess(*m_daemon);
}

void PulseAudioDaemon::signal(int number)
{
    ::kill(static_cast<pid_t>(m_daemon->processId()), number);
}

} // namespace lumaphone::test
