#include "storage/KeychainThread.h"

#include "base/MainQueue.h"
#include "support/Coroutines.h"
#include "support/Gate.h"
#include "support/MemoryKeychain.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>

namespace keychainthreadtest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

struct Fixture
{
    std::shared_ptr<MemoryKeychain> keychain = std::make_shared<MemoryKeychain>();
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    /// What a thread that has not been waited for may still touch.
    std::shared_ptr<Gate> answer = std::make_shared<Gate>();
    std::shared_ptr<std::atomic<int>> changes = std::make_shared<std::atomic<int>>(0);

    std::unique_ptr<KeychainThread> thread(std::chrono::milliseconds patience)
    {
        return std::make_unique<KeychainThread>(keychain, mainQueue, patience);
    }
};

} // namespace

class KeychainThreadTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsAskedIsDoneInOrderAndToldOnTheMainThread()
    {
        Fixture f;
        const auto thread = f.thread(1h);
        QStringList done;
        bool isElsewhere = false;
        const KeychainRunner run = thread->runner();
        run(
            KeychainCall::changes, [&] { isElsewhere = !f.mainQueue->isCurrent(); },
            [&] { done += "first"; });
        run(
            KeychainCall::reads, [] {},
            [&] { done += f.mainQueue->isCurrent() ? "second, on the main thread" : "second, elsewhere"; });
        QVERIFY(done.isEmpty());
        QVERIFY(waitUntil([&] { return done.size() == 2; }));
        QCOMPARE(done, (QStringList {"first", "second, on the main thread"}));
        QVERIFY(isElsewhere);
    }

    void theEndWaitsForWhatIsToBeChanged()
    {
        Fixture f;
        auto thread = f.thread(1h);
        const auto change = [changes = f.changes] {
            ++*changes;
        };
        thread->runner()(KeychainCall::changes, change, [] {});
        thread->runner()(KeychainCall::changes, change, [] {});
        thread.reset();
        QCOMPARE(f.changes->load(), 2);
    }

    void theEndAbandonsWhatIsOnlyRead()
    {
        Fixture f;
        auto thread = f.thread(1h);
        f.keychain->onAbandon = [answer = f.answer] {
            answer->open();
        };
        thread->runner()(
            KeychainCall::reads, [answer = f.answer] { answer->wait(); }, [] {});
        thread->runner()(
            KeychainCall::reads, [changes = f.changes] { ++*changes; }, [] {});
        thread.reset();
        QCOMPARE(f.changes->load(), 0);
    }

    void aKeychainThatNeverAnswersIsLeftBehind()
    {
        Fixture f;
        auto thread = f.thread(0ms);
        const auto begun = std::make_shared<Gate>();
        const auto ended = std::make_shared<Gate>();
        thread->runner()(
            KeychainCall::changes,
            [answer = f.answer, begun, ended, keychain = f.keychain] {
                begun->open();
                answer->wait();
                keychain->calls.append("too late");
                ended->open();
            },
            [] {});
        begun->wait();
        thread.reset();
        QVERIFY(f.keychain->calls.isEmpty());
        f.answer->open();
        ended->wait();
    }
};

LUMAPHONE_TEST(KeychainThreadTest)

} // namespace keychainthreadtest

#include "KeychainThreadTest.moc"
