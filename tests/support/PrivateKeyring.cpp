#include "support/PrivateKeyring.h"

#include "support/Coroutines.h"
#include "support/OwnedProcess.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>

namespace lumaphone::test {

namespace {

const auto serviceName = QStringLiteral("org.freedesktop.secrets");
const auto loginPath = QStringLiteral("/org/freedesktop/secrets/collection/login");
const auto collectionInterface = QStringLiteral("org.freedesktop.Secret.Collection");

QDBusMessage called(
    const QString &path, const QString &interface, const char *method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(serviceName, path, interface, QString::fromLatin1(method));
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message);
}

/// Invalid if the daemon does not answer.
QVariant property(const QString &path, const QString &interface, const char *name)
{
    const QDBusReply<QDBusVariant> reply = called(path, QStringLiteral("org.freedesktop.DBus.Properties"),
        "Get", {interface, QString::fromLatin1(name)});
    return reply.isValid() ? reply.value().variant() : QVariant();
}

QList<QDBusObjectPath> itemPaths()
{
    return qdbus_cast<QList<QDBusObjectPath>>(property(loginPath, collectionInterface, "Items"));
}

} // namespace

PrivateKeyring::PrivateKeyring(const PrivateSessionBus &bus)
    : m_bus(bus)
    , m_daemon(makeOwnedProcess())
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable :
        {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        environment.insert(QString::fromLatin1(variable), m_folder.path());
    }
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    m_daemon->setProcessEnvironment(environment);
    m_daemon->setProcessChannelMode(QProcess::MergedChannels);
}

PrivateKeyring::~PrivateKeyring()
{
    kill();
}

void PrivateKeyring::start()
{
    m_daemon->start(QStringLiteral("gnome-keyring-daemon"),
        {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
    m_daemon->write("a test's password");
    m_daemon->closeWriteChannel();
    awaitProcess(
        *m_daemon, QStringLiteral("The private keyring does not start"),
        [this] { return m_bus.hasService(serviceName) && itemCount() >= 0; }, [this] { return output(); });
}

void PrivateKeyring::kill()
{
    if (m_daemon->state() == QProcess::NotRunning) {
        return;
    }
    endProcess(*m_daemon);
    waitUntil([this] { return !m_bus.hasService(serviceName); });
}

bool PrivateKeyring::lock()
{
    called(QStringLiteral("/org/freedesktop/secrets"), QStringLiteral("org.freedesktop.Secret.Service"),
        "Lock", {QVariant::fromValue(QList {QDBusObjectPath(loginPath)})});
    return property(loginPath, collectionInterface, "Locked").toBool();
}

int PrivateKeyring::itemCount() const
{
    const bool answers = property(loginPath, collectionInterface, "Locked").isValid();
    return answers ? static_cast<int>(itemPaths().size()) : -1;
}

QString PrivateKeyring::describeItems() const
{
    QString text;
    const auto interface = QStringLiteral("org.freedesktop.Secret.Item");
    for (const QDBusObjectPath &item : itemPaths()) {
        text += QStringLiteral("label=%1\n").arg(property(item.path(), interface, "Label").toString());
        const auto attributes
            = qdbus_cast<QMap<QString, QString>>(property(item.path(), interface, "Attributes"));
        for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
            text += QStringLiteral("%1=%2\n").arg(attribute.key(), attribute.value());
        }
    }
    return text;
}

QByteArray PrivateKeyring::output()
{
    m_output += m_daemon->readAll();
    return m_output;
}

} // namespace lumaphone::test
