#include "platform/desktop/LockedSingleInstance.h"

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
constexpr qint64 longestPermission = 4096;

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

InstanceRole LockedSingleInstance::claim(
    const QString &permission, std::function<void(const QString &permission)> onRaiseRequested)
{
    createFolder(m_folder);
    m_lock = FileLock::tryTake(lockPath(m_folder));
    if (!m_lock) {
        askToRaise(permission);
        return InstanceRole::second;
    }
    listen(std::move(onRaiseRequested));
    return InstanceRole::first;
}

void LockedSingleInstance::listen(std::function<void(const QString &permission)> onRaiseRequested)
{
    const QString path = socketPath(m_folder);
    // We hold the lock: a socket that is there is what a killed process left behind.
    QLocalServer::removeServer(path);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(),
        [server = m_server.get(), raise = std::move(onRaiseRequested)] {
            // The permission is all there is to say; closing is the answer.
            while (QLocalSocket *socket = server->nextPendingConnection()) {
                socket->setReadBufferSize(longestPermission);
                const auto hear = [socket, raise] {
                    if (socket->canReadLine()) {
                        raise(QString::fromUtf8(socket->readLine().trimmed()));
                        socket->disconnectFromServer();
                    }
                };
                QObject::connect(socket, &QLocalSocket::readyRead, socket, hear);
                QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
                hear();
            }
        });
    // Without a socket the program still runs once; it merely cannot be called to the front.
    m_server->listen(path);
}

void LockedSingleInstance::askToRaise(const QString &permission) const
{
    const QDeadlineTimer deadline(patience);
    while (!deadline.hasExpired()) {
        QLocalSocket socket;
        socket.connectToServer(socketPath(m_folder));
        if (socket.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
            socket.write(permission.simplified().toUtf8() + '\n');
            if (socket.state() == QLocalSocket::ConnectedState) {
                socket.waitForDisconnected(static_cast<int>(deadline.remainingTime()));
            }
            return;
        }
        QThread::msleep(20);
    }
}

} // namespace lumaphone
