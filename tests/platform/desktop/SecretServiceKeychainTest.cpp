#include "platform/desktop/SecretServiceKeychain.h"

#include "base/AtomicFile.h"
#include "platform/desktop/JsonDefaultsStore.h"
#include "storage/LumaphoneSettings.h"
#include "support/Coroutines.h"
#include "support/MuteSecretService.h"
#include "support/PrivateKeyring.h"
#include "support/PrivateSessionBus.h"
#include "support/program/TestProgram.h"

#include <QDBusConnection>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <thread>

namespace secretservicekeychaintest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const KeychainQuery query {
    QStringLiteral("dev.lumaphone.provider"), QStringLiteral("lumaphone.provider.apiKey")};

/// Whether the arguments of any process of the machine contain `text`.
bool isInSomeCommandLine(const QByteArray &text)
{
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    return std::any_of(processes.begin(), processes.end(), [&text](const QString &process) {
        try {
            return readFile(QStringLiteral("/proc/%1/cmdline").arg(process))
                .value_or(QByteArray())
                .contains(text);
        } catch (const FileError &) {
            return false; // it has just ended
        }
    });
}

} // namespace

/// Runs against a real keyring daemon. The rows of the story build on each other's keyring, not on its items.
class SecretServiceKeychainTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void withoutAKeyringEveryCallFails();
    void anItemThatIsNotThereIsNotFound();
    void anAddedItemCanBeReadByItsAccountAlone();
    void anUpdateChangesTheOneItem();
    void addingAgainMakesNoSecondItem();
    void aRemovedItemIsGone();
    void bytesThatAreNoTextAreHandedOnAsTheyAre();
    void theSettingsKeepTheirKeyInTheKeyringAlone();
    void aSecretIsKeptWithItsAddress();
    void aPeekReadsWhatIsUnlockedAndAsksNobody();
    void anItemOutlivesTheKeyringsRestart();
    void aLockedCollectionNobodyUnlocksRefuses();
    void aMuteServiceCanBeAbandoned();
    void theEndOfTheBusIsNotTheEndOfTheProgram();

private:
    PrivateSessionBus m_bus;
    PrivateKeyring m_keyring {m_bus};
    SecretServiceKeychain m_keychain;
};

void SecretServiceKeychainTest::initTestCase()
{
    QVERIFY(m_bus.isRunning());
}

void SecretServiceKeychainTest::init()
{
    if (QLatin1String(QTest::currentTestFunction()) == QLatin1String("withoutAKeyringEveryCallFails")) {
        return;
    }
    if (m_keyring.itemCount() < 0) {
        m_keyring.start();
    }
    m_keychain.remove(query);
    QCOMPARE(m_keyring.itemCount(), 0);
}

void SecretServiceKeychainTest::withoutAKeyringEveryCallFails()
{
    QVERIFY(m_keychain.copyMatching(query).status == KeychainStatus::other);
    QVERIFY(m_keychain.update(query, {"secret"}) == KeychainStatus::other);
    QVERIFY(m_keychain.add(query, {"secret"}) == KeychainStatus::other);
    QVERIFY(m_keychain.remove(query) == KeychainStatus::other);
}

void SecretServiceKeychainTest::anItemThatIsNotThereIsNotFound()
{
    QVERIFY(m_keychain.copyMatching(query).status == KeychainStatus::itemNotFound);
    QVERIFY(m_keychain.update(query, {"secret"}) == KeychainStatus::itemNotFound);
    QVERIFY(m_keychain.remove(query) == KeychainStatus::itemNotFound);
    QCOMPARE(m_keyring.itemCount(), 0);
}

void SecretServiceKeychainTest::anAddedItemCanBeReadByItsAccountAlone()
{
    QVERIFY(m_keychain.add(query, {"sk-é 鍵"}) == KeychainStatus::success);
    const KeychainReading reading = m_keychain.copyMatching(query);
    QVERIFY(reading.status == KeychainStatus::success);
    QCOMPARE(reading.secret.data, QByteArray("sk-é 鍵"));
    QVERIFY(m_keychain.copyMatching({query.service, QStringLiteral("another")}).status
        == KeychainStatus::itemNotFound);
    QVERIFY(m_keychain.copyMatching({QStringLiteral("another"), query.account}).status
        == KeychainStatus::itemNotFound);
    const QString description = m_keyring.describeItems();
    QVERIFY2(
        description.contains(QStringLiteral("service=dev.lumaphone.provider\n")), qPrintable(description));
    QVERIFY2(
        description.contains(QStringLiteral("account=lumaphone.provider.apiKey\n")), qPrintable(description));
}

void SecretServiceKeychainTest::anUpdateChangesTheOneItem()
{
    QVERIFY(m_keychain.add(query, {"old"}) == KeychainStatus::success);
    QVERIFY(m_keychain.update(query, {"new"}) == KeychainStatus::success);
    QCOMPARE(m_keychain.copyMatching(query).secret.data, QByteArray("new"));
    QCOMPARE(m_keyring.itemCount(), 1);
}

void SecretServiceKeychainTest::addingAgainMakesNoSecondItem()
{
    QVERIFY(m_keychain.add(query, {"old"}) == KeychainStatus::success);
    QVERIFY(m_keychain.add(query, {"new"}) == KeychainStatus::success);
    QCOMPARE(m_keyring.itemCount(), 1);
    QCOMPARE(m_keychain.copyMatching(query).secret.data, QByteArray("new"));
}

void SecretServiceKeychainTest::aRemovedItemIsGone()
{
    QVERIFY(m_keychain.add(query, {"secret"}) == KeychainStatus::success);
    QVERIFY(m_keychain.remove(query) == KeychainStatus::success);
    QVERIFY(m_keychain.copyMatching(query).status == KeychainStatus::itemNotFound);
    QCOMPARE(m_keyring.itemCount(), 0);
}

void SecretServiceKeychainTest::bytesThatAreNoTextAreHandedOnAsTheyAre()
{
    const QByteArray bytes("\xff\x00\xfe", 3);
    QVERIFY(m_keychain.add(query, {bytes}) == KeychainStatus::success);
    QCOMPARE(m_keychain.copyMatching(query).secret.data, bytes);
    const LumaphoneKeychain keychain(m_keychain, query.service);
    QVERIFY(!keychain.read(query.account));
    keychain.save(QStringLiteral("text now"), query.account);
    QCOMPARE(keychain.read(query.account).value_or(QString()), QStringLiteral("text now"));
    QCOMPARE(m_keyring.itemCount(), 1);
}

void SecretServiceKeychainTest::theSettingsKeepTheirKeyInTheKeyringAlone()
{
    const QByteArray secret("sk-0d9b6c1e-never-to-be-seen");
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("settings.json"));
    JsonDefaultsStore defaults(file);
    LumaphoneSettings settings(defaults, m_keychain);
    QVERIFY(!settings.hasProviderAPIKey());
    settings.setProviderModel(QStringLiteral("small"));
    settings.saveProviderAPIKey(QStringLiteral(" %1\n").arg(QString::fromLatin1(secret)));
    settings.saveProviderAPIKey(QString::fromLatin1(secret));
    QCOMPARE(settings.providerConfiguration().apiKey, QString::fromLatin1(secret));
    QCOMPARE(m_keyring.itemCount(), 1);
    QVERIFY(LumaphoneSettings(defaults, m_keychain).hasProviderAPIKey());

    QVERIFY(readFile(file).value_or(QByteArray()).contains("small"));
    QVERIFY(!readFile(file)->contains(secret));
    QVERIFY(!isInSomeCommandLine(secret));
    QVERIFY(!m_keyring.output().contains(secret));
    QVERIFY(!m_keyring.describeItems().contains(QString::fromLatin1(secret)));

    settings.saveProviderAPIKey(QStringLiteral("  "));
    QCOMPARE(m_keyring.itemCount(), 0);
    QVERIFY(!LumaphoneSettings(defaults, m_keychain).hasProviderAPIKey());
}

void SecretServiceKeychainTest::aSecretIsKeptWithItsAddress()
{
    const auto first = QStringLiteral("https://first.test");
    const auto second = QStringLiteral("http://localhost:11434");
    QVERIFY(m_keychain.add(query, {"one", first}) == KeychainStatus::success);
    QCOMPARE(m_keychain.copyMatching(query).secret.address, first);
    QVERIFY(m_keychain.update(query, {"two", first}) == KeychainStatus::success);
    QCOMPARE(m_keychain.copyMatching(query).secret.address, first);
    QVERIFY(m_keychain.update(query, {"three", second}) == KeychainStatus::success);
    const KeychainReading reading = m_keychain.peek(query);
    QCOMPARE(reading.secret.data, QByteArray("three"));
    QCOMPARE(reading.secret.address, second);
    QCOMPARE(m_keyring.itemCount(), 1);
    m_keyring.kill();
    m_keyring.start();
    QCOMPARE(m_keychain.copyMatching(query).secret.address, second);
}

void SecretServiceKeychainTest::aPeekReadsWhatIsUnlockedAndAsksNobody()
{
    QVERIFY(m_keychain.peek(query).status == KeychainStatus::itemNotFound);
    QVERIFY(m_keychain.add(query, {"secret"}) == KeychainStatus::success);
    const KeychainReading reading = m_keychain.peek(query);
    QVERIFY(reading.status == KeychainStatus::success);
    QCOMPARE(reading.secret.data, QByteArray("secret"));

    const QTemporaryDir folder;
    JsonDefaultsStore defaults(folder.filePath(QStringLiteral("settings.json")));
    QVERIFY(m_keyring.lock());
    const KeychainReading locked = m_keychain.peek(query);
    QVERIFY(locked.status == KeychainStatus::locked);
    QVERIFY(locked.secret.data.isEmpty());
    QVERIFY(
        m_keychain.peek({query.service, QStringLiteral("another")}).status == KeychainStatus::itemNotFound);
    QVERIFY(LumaphoneSettings(defaults, m_keychain).hasProviderAPIKey());
    m_keyring.kill();
    QVERIFY(m_keychain.peek(query).status == KeychainStatus::other);
    m_keyring.start();
}

void SecretServiceKeychainTest::anItemOutlivesTheKeyringsRestart()
{
    QVERIFY(m_keychain.add(query, {"secret"}) == KeychainStatus::success);
    m_keyring.kill();
    QVERIFY(m_keychain.copyMatching(query).status == KeychainStatus::other);
    m_keyring.start();
    const KeychainReading reading = m_keychain.copyMatching(query);
    QVERIFY(reading.status == KeychainStatus::success);
    QCOMPARE(reading.secret.data, QByteArray("secret"));
}

void SecretServiceKeychainTest::aLockedCollectionNobodyUnlocksRefuses()
{
    QVERIFY(m_keychain.add(query, {"secret"}) == KeychainStatus::success);
    QVERIFY(m_keyring.lock());
    const KeychainReading reading = m_keychain.copyMatching(query);
    QVERIFY(reading.status == KeychainStatus::other);
    QVERIFY(reading.secret.data.isEmpty());
    QVERIFY(m_keychain.update(query, {"new"}) == KeychainStatus::other);
    QVERIFY(m_keychain.add(query, {"new"}) == KeychainStatus::other);
    QVERIFY(m_keychain.remove(query) == KeychainStatus::other);
    m_keyring.kill();
    m_keyring.start();
    QCOMPARE(m_keychain.copyMatching(query).secret.data, QByteArray("secret"));
}

void SecretServiceKeychainTest::aMuteServiceCanBeAbandoned()
{
    m_keyring.kill();
    {
        const MuteSecretService mute(m_bus);
        QVERIFY(mute.isThere());
        SecretServiceKeychain keychain;
        std::atomic<bool> hasEnded = false;
        KeychainStatus status = KeychainStatus::success;
        const std::jthread asking([&] {
            status = keychain.copyMatching(query).status;
            hasEnded = true;
        });
        QVERIFY(waitUntil([&mute] { return mute.calls() > 0; }));
        QVERIFY(!hasEnded);
        keychain.abandon();
        // By itself the call ends after twenty-five seconds.
        QVERIFY(waitUntil([&hasEnded] { return hasEnded.load(); }));
        QVERIFY(status == KeychainStatus::other);
        const int calls = mute.calls();
        QVERIFY(keychain.add(query, {"secret"}) == KeychainStatus::other);
        settle();
        QCOMPARE(mute.calls(), calls);
    }
    m_keyring.start();
}

void SecretServiceKeychainTest::theEndOfTheBusIsNotTheEndOfTheProgram()
{
    QVERIFY(m_keychain.add(query, {"secret"}) == KeychainStatus::success);
    m_bus.kill();
    QVERIFY(waitUntil([] { return !QDBusConnection::sessionBus().isConnected(); }));
    settle();
    QVERIFY(m_keychain.copyMatching(query).status == KeychainStatus::other);
    QVERIFY(m_keychain.update(query, {"new"}) == KeychainStatus::other);
    settle();
}

LUMAPHONE_TEST(SecretServiceKeychainTest)

} // namespace secretservicekeychaintest

#include "SecretServiceKeychainTest.moc"
