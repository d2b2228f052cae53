#include "base/FileLock.h"

#include "base/AtomicFile.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

namespace filelocktest {

using namespace lumaphone;
using namespace lumaphone::test;

class FileLockTest : public QObject
{
    Q_OBJECT

private slots:
    void oneHolderAtATime();
    void aMovedLockIsHeldOnce();
    void waitingEndsWhenTheHolderLetsGo();
    void theFolderMustExist();
};

void FileLockTest::oneHolderAtATime()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("lock"));
    {
        const auto lock = FileLock::tryTake(path);
        QVERIFY(lock);
        QVERIFY(!FileLock::tryTake(path));
    }
    QVERIFY(FileLock::tryTake(path));
}

void FileLockTest::aMovedLockIsHeldOnce()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("lock"));
    auto lock = FileLock::tryTake(path);
    {
        const FileLock moved = std::move(*lock);
        lock.reset();
        QVERIFY(!FileLock::tryTake(path));
    }
    QVERIFY(FileLock::tryTake(path));
}

void FileLockTest::waitingEndsWhenTheHolderLetsGo()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("lock"));
    std::atomic<bool> isHeld = true;
    auto lock = FileLock::tryTake(path);
    QVERIFY(lock);
    std::atomic<bool> enteredWhileHeld = false;
    std::jthread waiting([&] {
        const FileLock second = FileLock::wait(path);
        enteredWhileHeld = isHeld.load();
    });
    isHeld = false;
    lock.reset();
    waiting.join();
    QVERIFY(!enteredWhileHeld);
    QVERIFY(FileLock::tryTake(path));
}

void FileLockTest::theFolderMustExist()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("gone/lock"));
    QVERIFY(thrownBy<FileError>([&] { FileLock::wait(path); }));
    QVERIFY(thrownBy<FileError>([&] { FileLock::tryTake(path); }));
}

LUMAPHONE_TEST(FileLockTest)

} // namespace filelocktest

#include "FileLockTest.moc"
