#include "support/PipeWireDaemons.h"

#include "support/NeededPrograms.h"
#include "support/OwnedProcess.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QProcessEnvironment>

#include <csignal>
#include <utility>

namespace lumaphone::test {

namespace {

const QStringList &programs()
{
    static const QStringList names {
        QStringLiteral("pipewire"), QStringLiteral("wireplumber"), QStringLiteral("pipewire-pulse")};
    return names;
}

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        failProcess(path, file.errorString().toUtf8());
    }
}

} // namespace

PipeWireDaemons::PipeWireDaemons(QString folder)
    : m_folder(std::move(folder))
{
    configureManager();
}

PipeWireDaemons::~PipeWireDaemons()
{
    kill();
}

QStringList PipeWireDaemons::missingPrograms()
{
    return notInstalled(programs());
}

QString PipeWireDaemons::socketPath() const
{
    return m_folder + QStringLiteral("/pulse/native");
}

/// This machine's own devices are left alone.
void PipeWireDaemons::configureManager() const
{
    const QString folder = m_folder + QStringLiteral("/wireplumber");
    // Before 0.5, one file for each of its daemons' parts.
    write(folder + QStringLiteral("/main.lua.d/51-no-hardware.lua"),
        "alsa_monitor.enabled = false\nv4l2_monitor.enabled = false\nlibcamera_monitor.enabled = false\n");
    write(folder + QStringLiteral("/bluetooth.lua.d/51-no-hardware.lua"), "bluez_monitor.enabled = false\n");
    // Since then.
    write(folder + QStringLiteral("/wireplumber.conf.d/no-hardware.conf"),
        "wireplumber.profiles = { main = { hardware.audio = disabled, hardware.bluetooth = disabled,"
        " hardware.video-capture = disabled } }\n");
}

void PipeWireDaemons::start()
{
    kill();
    for (const QString &program : programs()) {
        run(program);
        // The others end where they find nobody.
        waitForGraph();
    }
    awaitProcess(
        *m_daemons.back(), QStringLiteral("The private sound server does not start"),
        [] {
            const auto question = makeOwnedProcess();
            question->start(QStringLiteral("pactl"), {QStringLiteral("info")});
            return question->waitForFinished(processLimitMs) && question->exitCode() == 0;
        },
        [this] { return said(); });
}

/// Until the first daemon takes connections.
void PipeWireDaemons::waitForGraph() const
{
    awaitProcess(
        *m_daemons.back(), QStringLiteral("PipeWire does not start"),
        [this] {
            QLocalSocket connection;
            connection.connectToServer(m_folder + QStringLiteral("/pipewire-0"));
            return connection.waitForConnected(processLimitMs);
        },
        [this] { return said(); });
}

void PipeWireDaemons::run(const QString &program)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "HOME"}) {
        environment.insert(QString::fromLatin1(name), m_folder);
    }
    // The session manager does not run without a bus; nothing on the machine's own takes part.
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus.address());
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), QStringLiteral("unix:path=/nowhere"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    for (const char *name :
        {"PULSE_SERVER", "PULSE_RUNTIME_PATH", "PIPEWIRE_RUNTIME_DIR", "PIPEWIRE_REMOTE"}) {
        environment.remove(QString::fromLatin1(name));
    }
    auto daemon = makeOwnedProcess();
    daemon->setProcessEnvironment(environment);
    daemon->setProcessChannelMode(QProcess::MergedChannels);
    daemon->setStandardOutputFile(m_folder + QLatin1Char('/') + program + QStringLiteral(".log"));
    daemon->start(program, QStringList());
    if (!daemon->waitForStarted(processLimitMs)) {
        failProcess(program, daemon->errorString().toUtf8());
    }
    m_daemons.push_back(std::move(daemon));
}

void PipeWireDaemons::kill()
{
    for (const auto &daemon : m_daemons) {
        endProcess(*daemon);
    }
    m_daemons.clear();
}

void PipeWireDaemons::signal(int number)
{
    for (const auto &daemon : m_daemons) {
        ::kill(static_cast<pid_t>(daemon->processId()), number);
    }
}

QByteArray PipeWireDaemons::said() const
{
    QByteArray all;
    for (const QString &program : programs()) {
        QFile log(m_folder + QLatin1Char('/') + program + QStringLiteral(".log"));
        if (log.open(QIODevice::ReadOnly)) {
            all += program.toUtf8() + ": " + log.readAll();
        }
    }
    return all;
}

} // namespace lumaphone::test
