#include "support/PrivateDisplay.h"

#include "support/OwnedProcess.h"

#include <QFile>
#include <QProcessEnvironment>

namespace lumaphone::test {

PrivateDisplay::PrivateDisplay(QSize size, WindowManager manager)
    : m_size(size)
    , m_formerDisplay(qgetenv("DISPLAY"))
{
    startServer();
    qputenv("DISPLAY", m_name.toUtf8());
    if (manager == WindowManager::openbox) {
        startWindowManager();
    }
}

PrivateDisplay::~PrivateDisplay()
{
    if (m_windowManager) {
        endProcess(*m_windowManager);
    }
    endProcess(*m_server);
    m_formerDisplay.isNull() ? qunsetenv("DISPLAY") : qputenv("DISPLAY", m_formerDisplay);
}

void PrivateDisplay::startServer()
{
    m_server = makeOwnedProcess();
    m_server->setStandardErrorFile(m_folder.filePath(QStringLiteral("server.log")));
    const QString screen = QStringLiteral("%1x%2x24").arg(m_size.width()).arg(m_size.height());
    // It chooses a free number, says which, and says it when it is ready.
    m_server->start(QStringLiteral("Xvfb"),
        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
            screen, QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-noreset")});
    QByteArray number;
    awaitProcess(
        *m_server, QStringLiteral("The private display does not start"),
        [&] {
            number += m_server->readAllStandardOutput();
            return number.endsWith('\n');
        },
        [this] { return logged(QStringLiteral("server.log")); });
    m_name = QLatin1Char(':') + QString::fromLatin1(number.trimmed());
}

void PrivateDisplay::startWindowManager()
{
    m_windowManager = makeOwnedProcess();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        environment.insert(QString::fromLatin1(name), m_folder.path());
    }
    m_windowManager->setProcessEnvironment(environment);
    m_windowManager->setStandardErrorFile(m_folder.filePath(QStringLiteral("manager.log")));
    // The command it starts runs when it manages the display.
    m_windowManager->start(QStringLiteral("openbox"),
        {QStringLiteral("--sm-disable"), QStringLiteral("--startup"), QStringLiteral("echo ready")});
    QByteArray said;
    awaitProcess(
        *m_windowManager, QStringLiteral("The window manager does not start"),
        [&] {
            said += m_windowManager->readAllStandardOutput();
            return said.contains("ready");
        },
        [this] { return logged(QStringLiteral("manager.log")); });
}

QByteArray PrivateDisplay::logged(const QString &name) const
{
    QFile log(m_folder.filePath(name));
    return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
}

QString PrivateDisplay::control(const QStringList &arguments) const
{
    return QString::fromUtf8(outputOf(QStringLiteral("xdotool"), arguments));
}

} // namespace lumaphone::test
