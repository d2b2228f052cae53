#include "app/welcome/WelcomeModel.h"

#include "storage/LumaphoneSettings.h"
#include "storage/SettingKeys.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

namespace welcomemodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

class WelcomeModelTest : public QObject
{
    Q_OBJECT

private slots:
    void aNewUserIsWelcomed()
    {
        Settings f;
        QVERIFY(WelcomeModel(f.settings, false).isWanted());
        QVERIFY(f.defaults.writes.isEmpty()); // who does not close it is welcomed another time
    }

    void whoHasASessionOrALibraryIsNot()
    {
        Settings f;
        const WelcomeModel model(f.settings, true);
        QVERIFY(!model.isWanted());
    }

    void whoHasClosedItIsNotWelcomedAgain()
    {
        Settings f;
        WelcomeModel model(f.settings, false);
        QSignalSpy changes(&model, &WelcomeModel::isWantedChanged);
        model.close();
        QVERIFY(!model.isWanted());
        QCOMPARE(changes.size(), 1);
        model.close(); // asked for from the menu
        QCOMPARE(changes.size(), 1);
        QVERIFY(!WelcomeModel(f.settings, false).isWanted());
    }

    void aSettingOfAnotherKindCountsAsNone()
    {
        Settings f;
        f.defaults.values[settingkeys::welcomeClosed] = QStringLiteral("true");
        QVERIFY(WelcomeModel(f.settings, false).isWanted());
    }

private:
    struct Settings
    {
        MemoryDefaultsStore defaults;
        MemoryKeychain keychain;
        LumaphoneSettings settings {defaults, keychain};
    };
};

LUMAPHONE_TEST(WelcomeModelTest)

} // namespace welcomemodeltest

#include "WelcomeModelTest.moc"
