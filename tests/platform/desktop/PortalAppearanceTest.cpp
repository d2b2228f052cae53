#include "platform/desktop/PortalAppearance.h"

#include "support/PrivateSessionBus.h"
#include "support/program/TestProgram.h"

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QMap>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <memory>

namespace portalappearancetest {

using namespace lumaphone;
using namespace lumaphone::test;

using SettingGroups = QMap<QString, QVariantMap>;

/// An accent colour as it travels over the bus.
struct Accent
{
    double red = 0;
    double green = 0;
    double blue = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Accent &accent)
{
    argument.beginStructure();
    argument << accent.red << accent.green << accent.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Accent &accent)
{
    argument.beginStructure();
    argument >> accent.red >> accent.green >> accent.blue;
    argument.endStructure();
    return argument;
}

QVariantMap scheme(uint preference)
{
    return {{"color-scheme", preference}};
}

/// A settings portal as desktops have it, which answers from a thread of its own, as another process would.
class SettingsPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    enum class Answer { atOnce, whenAllowed };

    explicit SettingsPortal(QVariantMap settings, Answer answer = Answer::atOnce)
        : m_settings(std::move(settings))
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
        QMetaObject::invokeMethod(this, [this] { m_bus->send(m_held.createReply(everything())); });
    }
    /// Tells everybody of a change, as the desktop's settings do.
    void change(const QString &group, const QString &key, const QVariant &value)
    {
        QMetaObject::invokeMethod(this, [=, this] {
            QDBusMessage signal = QDBusMessage::createSignal(
                path(), QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
            signal << group << key << QVariant::fromValue(QDBusVariant(value));
            m_bus->send(signal);
        });
    }

public slots:
    Q_SCRIPTABLE void ReadAll(const QStringList &groups) // NOLINT: the bus's name
    {
        setDelayedReply(true);
        m_held = message();
        if (groups != QStringList("org.freedesktop.appearance")) {
            sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), QStringLiteral("no"));
        } else if (m_answer == Answer::atOnce) {
            m_bus->send(m_held.createReply(everything()));
        }
    }

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    QVariant everything() const
    {
        return QVariant::fromValue(
            SettingGroups {{"org.freedesktop.appearance", m_settings}, {"org.example", {{"contrast", 1U}}}});
    }
    void open()
    {
        qDBusRegisterMetaType<SettingGroups>();
        qDBusRegisterMetaType<Accent>();
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

    const QVariantMap m_settings;
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
    void anAccentColourIsTakenAsItIs_data();
    void anAccentColourIsTakenAsItIs();
    void contrastAndMotionAreAskedFor();
    void anAnswerOfAnotherKindChangesNothing();
    void aChangeIsTold();
    void everyChangeIsTold();
    void aSlowPortalIsNotWaitedFor();
    void nothingElseHappensWhileItAsks();

private:
    PrivateSessionBus m_bus;
};

void PortalAppearanceTest::withoutAPortalTheFallbackStands()
{
    const DesktopAppearance light {.scheme = ColorScheme::light};
    const DesktopAppearance dark {.scheme = ColorScheme::dark};
    QCOMPARE(PortalAppearance(ColorScheme::light).current(), light);
    QCOMPARE(PortalAppearance(ColorScheme::dark).current(), dark);
    const QDBusConnection none(QStringLiteral("none"));
    QCOMPARE(PortalAppearance(ColorScheme::dark, none).current(), dark);
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
    const SettingsPortal portal(scheme(preference));
    const PortalAppearance appearance(fallback);
    QTEST(appearance.current().scheme, "expected");
    QVERIFY(!appearance.current().accent);
    QVERIFY(!appearance.current().wantsHighContrast);
    QVERIFY(!appearance.current().wantsReducedMotion);
}

void PortalAppearanceTest::anAccentColourIsTakenAsItIs_data()
{
    QTest::addColumn<QVariant>("accent");
    QTest::addColumn<std::optional<RgbColor>>("expected");

    const std::optional<RgbColor> none;
    QTest::newRow("a colour") << QVariant::fromValue(Accent {0.2, 0.5, 1})
                              << std::optional(RgbColor {0.2, 0.5, 1});
    QTest::newRow("black") << QVariant::fromValue(Accent {0, 0, 0}) << std::optional(RgbColor {0, 0, 0});
    QTest::newRow("out of range: no wish") << QVariant::fromValue(Accent {-1, -1, -1}) << none;
    QTest::newRow("one part too bright") << QVariant::fromValue(Accent {0, 0, 1.1}) << none;
    QTest::newRow("no number") << QVariant::fromValue(Accent {0, qQNaN(), 0}) << none;
    QTest::newRow("another kind") << QVariant(QStringLiteral("#3366ff")) << none;
}

void PortalAppearanceTest::anAccentColourIsTakenAsItIs()
{
    QFETCH(const QVariant, accent);
    QFETCH(const std::optional<RgbColor>, expected);
    const SettingsPortal portal({{"accent-color", accent}, {"color-scheme", 1U}});
    const PortalAppearance appearance(ColorScheme::light);
    QCOMPARE(appearance.current().scheme, ColorScheme::dark);
    QCOMPARE(appearance.current().accent, expected);
}

void PortalAppearanceTest::contrastAndMotionAreAskedFor()
{
    const SettingsPortal portal({{"contrast", 1U}, {"reduced-motion", 1U}, {"something-new", 5}});
    const PortalAppearance appearance(ColorScheme::light);
    QVERIFY(appearance.current().wantsHighContrast);
    QVERIFY(appearance.current().wantsReducedMotion);
    QCOMPARE(appearance.current().scheme, ColorScheme::light);
}

void PortalAppearanceTest::anAnswerOfAnotherKindChangesNothing()
{
    const SettingsPortal portal(
        {{"color-scheme", QStringLiteral("dark")}, {"contrast", QVariant::fromValue(Accent {1, 1, 1})}});
    const PortalAppearance appearance(ColorScheme::light);
    QCOMPARE(appearance.current(), DesktopAppearance {});
}

void PortalAppearanceTest::everyChangeIsTold()
{
    const auto group = QStringLiteral("org.freedesktop.appearance");
    SettingsPortal portal(QVariantMap {});
    PortalAppearance appearance(ColorScheme::light);
    int changes = 0;
    appearance.observe([&changes] { ++changes; });
    portal.change(group, QStringLiteral("accent-color"), QVariant::fromValue(Accent {1, 0.5, 0}));
    QTRY_COMPARE(changes, 1);
    QCOMPARE(appearance.current().accent, std::optional(RgbColor {1, 0.5, 0}));
    portal.change(group, QStringLiteral("contrast"), 1U);
    QTRY_COMPARE(changes, 2);
    QVERIFY(appearance.current().wantsHighContrast);
    portal.change(group, QStringLiteral("reduced-motion"), 1U);
    QTRY_COMPARE(changes, 3);
    QVERIFY(appearance.current().wantsReducedMotion);
    portal.change(group, QStringLiteral("accent-color"), QVariant::fromValue(Accent {-1, -1, -1}));
    portal.change(group, QStringLiteral("contrast"), 0U);
    portal.change(group, QStringLiteral("reduced-motion"), 0U);
    QTRY_COMPARE(changes, 6);
    QCOMPARE(appearance.current(), DesktopAppearance {});
}

void PortalAppearanceTest::aChangeIsTold()
{
    SettingsPortal portal(scheme(2));
    PortalAppearance appearance(ColorScheme::light);
    int changes = 0;
    appearance.observe([&changes] { ++changes; });
    const auto group = QStringLiteral("org.freedesktop.appearance");
    const auto key = QStringLiteral("color-scheme");
    portal.change(QStringLiteral("org.example"), key, 1U);
    portal.change(group, QStringLiteral("something-new"), 1U);
    portal.change(group, key, 2U);
    portal.change(group, key, 1U);
    QTRY_COMPARE(appearance.current().scheme, ColorScheme::dark);
    QCOMPARE(changes, 1);
    portal.change(group, key, 0U);
    QTRY_COMPARE(appearance.current().scheme, ColorScheme::light);
    QCOMPARE(changes, 2);
}

void PortalAppearanceTest::aSlowPortalIsNotWaitedFor()
{
    SettingsPortal portal(scheme(1), SettingsPortal::Answer::whenAllowed);
    PortalAppearance appearance(ColorScheme::light);
    QCOMPARE(appearance.current().scheme, ColorScheme::light);
    bool isTold = false;
    appearance.observe([&isTold] { isTold = true; });
    // The answer to the second question: the first one's is too late for its asker.
    QTRY_VERIFY_WITH_TIMEOUT((portal.allow(), QTest::qWait(1), isTold), 5000);
    QCOMPARE(appearance.current().scheme, ColorScheme::dark);
}

void PortalAppearanceTest::nothingElseHappensWhileItAsks()
{
    const SettingsPortal portal(scheme(1), SettingsPortal::Answer::whenAllowed);
    bool hasHappened = false;
    QTimer::singleShot(0, this, [&hasHappened] { hasHappened = true; });
    const PortalAppearance appearance(ColorScheme::light);
    QVERIFY(!hasHappened);
    QTRY_VERIFY(hasHappened);
}

LUMAPHONE_TEST(PortalAppearanceTest)

} // namespace portalappearancetest

#include "PortalAppearanceTest.moc"
