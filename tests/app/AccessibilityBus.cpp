#include "app/AccessibilityBus.h"

#include "support/Coroutines.h"
#include "support/OwnedProcess.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QTest>

namespace lumaphone::test {

namespace {

const QString launcher = QStringLiteral("/usr/libexec/at-spi-bus-launcher");
// Debian's own, which has Debian's libraries.
const QString interpreter = QStringLiteral("/usr/bin/python3");
const QStringList lookForLibrary {QStringLiteral("-c"),
    QStringLiteral("import gi; gi.require_version('Atspi', '2.0'); from gi.repository import Atspi")};

/// "DEPTH|ROLE|STATES|NAME".
AccessibleItem item(const QString &line)
{
    const auto part = [&line](int index) {
        return line.section(QLatin1Char('|'), index, index);
    };
    return {part(0).toInt(), part(1), part(2).split(QLatin1Char(','), Qt::SkipEmptyParts),
        line.section(QLatin1Char('|'), 3)};
}

} // namespace

AccessibilityBus::AccessibilityBus()
    : m_launcher(makeOwnedProcess())
    , m_reader(makeOwnedProcess())
{
    // Applications join only where a desktop says so, or this.
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    m_launcher->start(launcher, {QStringLiteral("--launch-immediately")});
    // Not the connection of the application, which is not there yet.
    const QString name = QStringLiteral("lumaphone-accessibility-test");
    const QDBusConnection connection = QDBusConnection::connectToBus(m_session.address(), name);
    awaitProcess(
        *m_launcher, QStringLiteral("The accessibility bus does not start"),
        [&] { return connection.interface()->isServiceRegistered(QStringLiteral("org.a11y.Bus")).value(); },
        [this] { return m_launcher->readAllStandardError(); });
    QDBusConnection::disconnectFromBus(name);
}

AccessibilityBus::~AccessibilityBus()
{
    endProcess(*m_reader);
    endProcess(*m_launcher);
}

QStringList AccessibilityBus::missing()
{
    QStringList missing;
    if (!QFile::exists(launcher)) {
        missing << QStringLiteral("at-spi2-core");
    }
    if (QProcess::execute(interpreter, lookForLibrary) != 0) {
        missing << QStringLiteral("gir1.2-atspi-2.0 and python3-gi");
    }
    return missing;
}

bool AccessibilityBus::listen(const QString &application)
{
    m_reader->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_reader->start(interpreter, {QStringLiteral(LUMAPHONE_SCREEN_READER), application});
    return waitUntil(
        [this] {
            read();
            return m_isReady;
        },
        accessibilityPatienceMs);
}

const QStringList &AccessibilityBus::said()
{
    read();
    return m_said;
}

const QStringList &AccessibilityBus::focused()
{
    read();
    return m_focused;
}

QList<AccessibleItem> AccessibilityBus::walk()
{
    m_items.clear();
    m_hasWalked = false;
    m_reader->write("walk\n");
    waitUntil(
        [this] {
            read();
            return m_hasWalked;
        },
        accessibilityPatienceMs);
    return m_hasWalked ? m_items : QList<AccessibleItem>();
}

void AccessibilityBus::read()
{
    while (m_reader->canReadLine()) {
        const QString line = QString::fromUtf8(m_reader->readLine()).trimmed();
        const QString word = line.section(QLatin1Char(' '), 0, 0);
        const QString rest = line.section(QLatin1Char(' '), 1);
        if (word == QStringLiteral("said")) {
            m_said.append(rest);
        } else if (word == QStringLiteral("focused")) {
            m_focused.append(rest);
        } else if (word == QStringLiteral("item")) {
            m_items.append(item(rest));
        } else {
            m_isReady = m_isReady || word == QStringLiteral("ready");
            m_hasWalked = m_hasWalked || word == QStringLiteral("walked");
        }
    }
}

} // namespace lumaphone::test
