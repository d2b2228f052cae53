#include "platform/desktop/PortalAppearance.h"

#include "support/PrivateSessionBus.h"
#include "support/program/TestProgram.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <memory>

namespace portalappearancetest {

using namespace lumaphone;
using namespace lumaphone::test;

/// A settings portal as desktops have it, which answers from a thread of its own, as another process would.
class SettingsPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    enum class Answer { atOnce, whenAllowed };

    explicit SettingsPortal(uint preference, Answer answer = Answer::atOnce)
        : m_preference(preference)
        , m_answer(answer)
    {
        moveToThread(&m_thread);
        m_thread.start();
        QMetaObject::invokeMethod(this, &SettingsPortal::open, Qt::BlockingQueuedConnection);
    }
    ~SettingsPortal() override
    {
        QMetaObject::invokeMethod(this, &SettingsPortal::close, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }

    /// Lets a question that was held back be answered.
    void allow()
    {
        QMetaObject::invokeMethod(this, [this] { m_bus->send(m_held.createReply(wrapped())); });
    }
    /// Tells everybody of a change, as the desktop's settings do.
    void change(const QString &group, const QString &key, uint preference)
    {
        QMetaObject::invokeMethod(this, [=, this] {
            QDBusMessage signal = QDBusMessage::createSignal(
                path(), QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
            signal << group << key << QVariant::fromValue(QDBusVariant(preference));
            m_bus->send(signal);
        });
    }

public slots:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &key) // NOLINT: the bus's name
    {
        if (group != QStringLiteral("org.freedesktop.appearance") || key != QStringLiteral("color-scheme")) {
            sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), QStringLiteral("no"));
        } else if (m_answer == Answer::whenAllowed) {
            setDelayedReply(true);
            m_held = message();
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_preference)));
    }

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    QVariant wrapped() const
    {
        return QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(m_preference))));
    }
    void open()
    {
        m_bus = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal")));
        m_bus->registerObject(path(), this, QDBusConnection::ExportScriptableSlots);
        m_bus->registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    void close()
    {
        m_bus.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }

    const uint m_preference;
    const Answer m_answer;
    QThread m_thread;
    std::unique_ptr<QDBusConnection> m_bus;
    QDBusMessage m_held;
};

class PortalAppearanceTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutAPortalTheFallbackStands();
    void thePortalIsAsked_data();
    void thePortalIsAsked();
    void aChangeIsTold();
    void aSlowPortalIsNotWaitedFor();
    void nothingElseHappensWhileItAsks();

private:
    PrivateSessionBus m_bus;
};

void PortalAppearanceTest::withoutAPortalTheFallbackStands()
{
    QCOMPARE(PortalAppearance(ColorScheme::light).colorScheme(), ColorScheme::light);
    QCOMPARE(PortalAppearance(ColorScheme::dark).colorScheme(), ColorScheme::dark);
    const QDBusConnection none(QStringLiteral("none"));
    QCOMPARE(PortalAppearance(ColorScheme::dark, none).colorScheme(), ColorScheme::dark);
}

void PortalAppearanceTest::thePortalIsAsked_data()
{
    QTest::addColumn<uint>("preference");
    QTest::addColumn<ColorScheme>("fallback");
    QTest::addColumn<ColorScheme>("expected");

    QTest::newRow("none") << 0U << ColorScheme::dark << ColorScheme::dark;
    QTest::newRow("dark") << 1U << ColorScheme::light << ColorScheme::dark;
    QTest::newRow("light") << 2U << ColorScheme::dark << ColorScheme::light;
    QTest::newRow("unknown") << 7U << ColorScheme::light << ColorScheme::light;
}

void PortalAppearanceTest::thePortalIsAsked()
{
    QFETCH(const uint, preference);
    QFETCH(const ColorScheme, fallback);
    const SettingsPortal portal(preference);
    const PortalAppearance appearance(fallback);
    QTEST(appearance.colorScheme(), "expected");
}

void PortalAppearanceTest::aChangeIsTold()
{
    SettingsPortal portal(2);
    PortalAppearance appearance(ColorScheme::light);
    int changes = 0;
    appearance.observe([&changes] { ++changes; });
    const auto group = QStringLiteral("org.freedesktop.appearance");
    const auto key = QStringLiteral("color-scheme");
    portal.change(QStringLiteral("org.example"), key, 1);
    portal.change(group, QStringLiteral("contrast"), 1);
    portal.change(group, key, 2);
    portal.change(group, key, 1);
    QTRY_COMPARE(appearance.colorScheme(), ColorScheme::dark);
    QCOMPARE(changes, 1);
    portal.change(group, key, 0);
    QTRY_COMPARE(appearance.colorScheme(), ColorScheme::light);
    QCOMPARE(changes, 2);
}

void PortalAppearanceTest::aSlowPortalIsNotWaitedFor()
{
    SettingsPortal portal(1, SettingsPortal::Answer::whenAllowed);
    PortalAppearance appearance(ColorScheme::light);
    QCOMPARE(appearance.colorScheme(), ColorScheme::light);
    bool isTold = false;
    appearance.observe([&isTold] { isTold = true; });
    // The answer to the second question: the first one's is too late for its asker.
    QTRY_VERIFY_WITH_TIMEOUT((portal.allow(), QTest::qWait(1), isTold), 5000);
    QCOMPARE(appearance.colorScheme(), ColorScheme::dark);
}

void PortalAppearanceTest::nothingElseHappensWhileItAsks()
{
    const SettingsPortal portal(1, SettingsPortal::Answer::whenAllowed);
    bool hasHappened = false;
    QTimer::singleShot(0, this, [&hasHappened] { hasHappened = true; });
    const PortalAppearance appearance(ColorScheme::light);
    QVERIFY(!hasHappened);
    QTRY_VERIFY(hasHappened);
}

LUMAPHONE_TEST(PortalAppearanceTest)

} // namespace portalappearancetest

#include "PortalAppearanceTest.moc"
