#include "platform/linux/LockedSingleInstance.h"

#include "base/AtomicFile.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>

#include <chrono>

namespace lumaphone {

using namespace std::chrono_literals;

namespace {

/// How long a second start waits for the first, which may be starting up itself.
constexpr auto patience = 3s;

QString lockPath(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("lumaphone.lock"));
}

QString socketPath(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("lumaphone.socket"));
}

} // namespace

LockedSingleInstance::LockedSingleInstance(const QString &folder)
    : m_folder(folder)
{
}

LockedSingleInstance::~LockedSingleInstance() = default;

InstanceRole LockedSingleInstance::claim(std::function<void()> onRaiseRequested)
{
    createFolder(m_folder);
    m_lock = FileLock::tryTake(lockPath(m_folder));
    if (!m_lock) {
        askToRaise();
        return InstanceRole::second;
    }
    listen(std::move(onRaiseRequested));
    return InstanceRole::first;
}

void LockedSingleInstance::listen(std::function<void()> onRaiseRequested)
{
    const QString path = socketPath(m_folder);
    // We hold the lock: a socket that is there is what a killed process left behind.
    QLocalServer::removeServer(path);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(),
        [server = m_server.get(), raise = std::move(onRaiseRequested)] {
            // Connecting is all there is to say; closing is the answer.
            while (QLocalSocket *socket = server->nextPendingConnection()) {
                raise();
                socket->disconnectFromServer();
                socket->deleteLater();
            }
        });
    // Without a socket the program still runs once; it merely cannot be called to the front.
    m_server->listen(path);
}

void LockedSingleInstance::askToRaise() const
{
    const QDeadlineTimer deadline(patience);
    while (!deadline.hasExpired()) {
        QLocalSocket socket;
        socket.connectToServer(socketPath(m_folder));
        if (socket.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
            if (socket.state() == QLocalSocket::ConnectedState) {
                socket.waitForDisconnected(static_cast<int>(deadline.remainingTime()));
            }
            return;
        }
        QThread::msleep(20);
    }
}

} // namespace lumaphone
