#include "storage/ProviderKeyReader.h"

#include "storage/LumaphoneSettings.h"
#include "support/HeldKeychainCalls.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

namespace providerkeyreadertest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

const KeychainQuery keyQuery {
    QStringLiteral("dev.lumaphone.provider"), QStringLiteral("lumaphone.provider.apiKey")};
const auto openAI = QStringLiteral("https://api.openai.com");

/// Settings over a keychain that answers when the test says so.
struct Fixture
{
    std::shared_ptr<VirtualClock> clock = std::make_shared<VirtualClock>();
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    HeldKeychainCalls asked;
    LumaphoneSettings settings {defaults, keychain, asked.runner()};
    ProviderKeyReader reader {settings.providerKey(), clock, mainQueue};

    Fixture() = default;
    ~Fixture() { clock->advance(1h); }
    Fixture(const Fixture &) = delete;
    Fixture &operator=(const Fixture &) = delete;

    QString read() { return test::waitFor(reader.read({})).text; }
};

} // namespace

class ProviderKeyReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void aKeyThatMayNotBeNeededIsWaitedForTwoSeconds()
    {
        Fixture f;
        const auto read = f.reader.read({});
        f.clock->advance(1999ms);
        QVERIFY(!read.isReady());
        f.clock->advance(1ms);
        QVERIFY(read.isReady());
        QVERIFY(f.settings.providerKey().isOverdue());
        // The next one does not wait at all, and asks nothing more of a keychain that owes an answer.
        QCOMPARE(f.read(), QString());
        QCOMPARE(f.asked.count(), std::size_t {2});
    }

    void anAnswerThatWasGivenUpIsTold()
    {
        Fixture f;
        f.keychain.items.push_back({keyQuery, "k", openAI});
        const auto read = f.reader.read({});
        f.clock->advance(2s);
        QVERIFY(read.isReady());
        QSignalSpy found(&f.settings.providerKey(), &ProviderKeyStore::found);
        f.asked.answerNext();
        f.asked.answerNext();
        QCOMPARE(found.size(), 1);
        QVERIFY(f.settings.hasProviderAPIKey());
        auto second = f.reader.read({});
        f.asked.answerNext();
        QCOMPARE(test::waitFor(std::move(second)).text, "k");
    }

    void anAnswerInTimeIsNoNews()
    {
        Fixture f;
        f.keychain.items.push_back({keyQuery, "k", openAI});
        QSignalSpy found(&f.settings.providerKey(), &ProviderKeyStore::found);
        auto read = f.reader.read({});
        f.asked.answerNext();
        f.asked.answerNext();
        QCOMPARE(test::waitFor(std::move(read)).text, "k");
        QCOMPARE(found.size(), 0);
    }

    void aKeyThatIsThereIsWaitedFor()
    {
        Fixture f;
        f.keychain.items.push_back({keyQuery, "k", openAI});
        auto read = f.reader.read({});
        f.asked.answerNext(); // it is there, but it is locked, and the user is asked for it
        f.clock->advance(1h);
        QVERIFY(!read.isReady());
        f.asked.answerNext();
        QCOMPARE(test::waitFor(std::move(read)).text, "k");
    }

    void whoStopsWaitsNoLonger()
    {
        Fixture f;
        f.keychain.items.push_back({keyQuery, "k", openAI});
        f.asked.answerNext();
        std::stop_source stop;
        const auto read = f.reader.read(stop.get_token());
        settle();
        QVERIFY(!read.isReady());
        stop.request_stop();
        QVERIFY(waitUntil([&] { return read.isReady(); }));
    }

    void requestsAtTheSameTimeShareAReadingButNotWithWhatIsSavedBetween()
    {
        Fixture f;
        f.keychain.items.push_back({keyQuery, "old", openAI});
        f.asked.answerNext();
        auto first = f.reader.read({});
        auto second = f.reader.read({});
        QCOMPARE(f.asked.count(), std::size_t {1});
        f.settings.saveProviderAPIKey(QStringLiteral("new"));
        auto third = f.reader.read({});
        QCOMPARE(f.asked.count(), std::size_t {3});
        f.asked.answerNext();
        QCOMPARE(test::waitFor(std::move(first)).text, "old");
        QCOMPARE(test::waitFor(std::move(second)).text, "old");
        QVERIFY(!third.isReady());
        f.asked.answerNext();
        f.asked.answerNext();
        QCOMPARE(test::waitFor(std::move(third)).text, "new");
    }

    void nothingIsKnownBeforeTheKeychainAnswers()
    {
        Fixture f;
        f.keychain.items.push_back({keyQuery, "k", openAI});
        QSignalSpy changed(&f.settings, &LumaphoneSettings::hasProviderAPIKeyChanged);
        QVERIFY(f.settings.providerKey().presence() == ProviderKeyPresence::unknown);
        QVERIFY(!f.settings.hasProviderAPIKey());
        QVERIFY(f.keychain.calls.isEmpty());
        f.asked.answerNext();
        QVERIFY(f.settings.providerKey().presence() == ProviderKeyPresence::present);
        QCOMPARE(changed.size(), 1);
    }

    void whatWasSavedMeanwhileIsNotForgottenForAnOlderAnswer()
    {
        Fixture f;
        f.settings.saveProviderAPIKey(QStringLiteral("k"));
        QVERIFY(f.settings.hasProviderAPIKey());
        f.asked.answerNext();
        QVERIFY(f.settings.hasProviderAPIKey());
        QVERIFY(f.settings.providerKey().isSaving());
        f.asked.answerNext();
        QVERIFY(!f.settings.providerKey().isSaving());
    }

    void settingsThatAreGoneAreToldNothing()
    {
        MemoryDefaultsStore defaults;
        MemoryKeychain keychain;
        std::vector<std::function<void()>> ends;
        const auto later = [&ends](KeychainCall, std::function<void()>, std::function<void()> done) {
            ends.push_back(std::move(done));
        };
        auto settings = std::make_unique<LumaphoneSettings>(defaults, keychain, later);
        bool isHanded = false;
        settings->providerKey().read([&isHanded](const AddressedText &) { isHanded = true; });
        settings->saveProviderAPIKey(QStringLiteral("k"));
        settings.reset();
        QCOMPARE(ends.size(), std::size_t {3});
        for (const auto &end : ends) {
            end();
        }
        QVERIFY(!isHanded);
    }
};

LUMAPHONE_TEST(ProviderKeyReaderTest)

} // namespace providerkeyreadertest

#include "ProviderKeyReaderTest.moc"
