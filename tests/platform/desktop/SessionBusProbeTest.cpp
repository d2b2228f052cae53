#include "platform/desktop/SessionBusProbe.h"

#include "support/PrivateKeyring.h"
#include "support/PrivateSessionBus.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace sessionbusprobetest {

using namespace lumaphone;
using namespace lumaphone::test;

/// With a real keyring daemon on a real bus.
class SessionBusProbeTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutABusNothingIsAsked()
    {
        const SessionBusProbe probe(QDBusConnection("no connection"));
        QCOMPARE(probe.portals(), ServiceState::noBus);
        QCOMPARE(probe.keyring().service, ServiceState::noBus);
    }

    void aServiceThatNobodyOffersIsMissing()
    {
        const SessionBusProbe probe(QDBusConnection::sessionBus());
        QCOMPARE(probe.portals(), ServiceState::missing);
        QCOMPARE(probe.keyring().service, ServiceState::missing);
        QVERIFY(!probe.keyring().isLocked);
    }

    void aKeyringIsSeenOpenAndLocked()
    {
        PrivateKeyring keyring(m_bus);
        keyring.start();
        const SessionBusProbe probe(QDBusConnection::sessionBus());
        QCOMPARE(probe.keyring().service, ServiceState::running);
        QCOMPARE(probe.keyring().isLocked, std::optional(false));
        QVERIFY(keyring.lock());
        QCOMPARE(probe.keyring().isLocked, std::optional(true));
    }

private:
    PrivateSessionBus m_bus;
};

LUMAPHONE_TEST(SessionBusProbeTest)

} // namespace sessionbusprobetest

#include "SessionBusProbeTest.moc"
