#include "platform/desktop/DesktopFileViewer.h"

#include <QCoroSignal>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

#include <utility>

namespace lumaphone {

namespace {

/// `method`: "ShowItems", which selects, or "ShowFolders", which opens.
QDBusPendingCall ask(const QString &method, const QString &path)
{
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"), QStringLiteral("org.freedesktop.FileManager1"),
        method);
    const QStringList uris {QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())};
    message.setArguments({uris, QString()});
    return QDBusConnection::sessionBus().asyncCall(message);
}

} // namespace

DesktopFileViewer::DesktopFileViewer(QString opener)
    : m_opener(std::move(opener))
{
}

QCoro::Task<> DesktopFileViewer::reveal(QString path)
{
    const QString opener = m_opener;
    const QFileInfo file(path);
    const QString folder = file.isDir() ? path : file.absolutePath();
    if (!QFileInfo(folder).isDir()) {
        throw FileViewerError(QStringLiteral("找不到「%1」。").arg(path));
    }
    QDBusPendingCallWatcher watcher(
        file.exists() ? ask(QStringLiteral("ShowItems"), path) : ask(QStringLiteral("ShowFolders"), folder));
    if (!watcher.isFinished()) {
        co_await qCoro(&watcher, &QDBusPendingCallWatcher::finished);
    }
    if (!watcher.isError()) {
        co_return;
    }
    if (!QProcess::startDetached(opener, {folder})) {
        throw FileViewerError(QStringLiteral("無法開啟資料夾「%1」。").arg(folder));
    }
}

} // namespace lumaphone
