#include "support/ChildProcess.h"
#include "support/CountedUuids.h"
#include "support/LibraryOnDisk.h"
#include "support/VirtualClock.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The number of the step of writing at which this process kills itself; none while it is 0.
int fatalStep = 0;
int steps = 0;

void beforeStep()
{
    if (fatalStep > 0 && ++steps == fatalStep) {
        ::raise(SIGKILL);
    }
}

} // namespace

// Every change of the disk that the libraries of this program ask for passes here.
extern "C" {
int rename(const char *from, const char *to) noexcept
{
    beforeStep();
    return static_cast<int>(::syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}
ssize_t write(int descriptor, const void *bytes, size_t size)
{
    if (descriptor > 2) {
        beforeStep();
    }
    return ::syscall(SYS_write, descriptor, bytes, size);
}
int fsync(int)
{
    beforeStep();
    return 0; // what a killed process has written is there without it
}
int unlink(const char *path) noexcept
{
    beforeStep();
    return static_cast<int>(::syscall(SYS_unlink, path));
}
int unlinkat(int folder, const char *path, int flags) noexcept
{
    beforeStep();
    return static_cast<int>(::syscall(SYS_unlinkat, folder, path, flags));
}
int mkdir(const char *path, mode_t mode) noexcept
{
    beforeStep();
    return static_cast<int>(::syscall(SYS_mkdir, path, mode));
}
}

namespace {

/// The library as the parent and the child see it.
struct Library : LibraryOnDisk<VirtualClock>
{
    using LibraryOnDisk::LibraryOnDisk;

    TranscriptRecordMetadata save(uint identity, const char *text)
    {
        // Another moment, and therefore another folder, for each.
        clock.advance(std::chrono::hours(identity * identity));
        LiveTranscript live;
        live.lines = {{countedUuid(identity), QString::fromLatin1(text), QString(),
            AppleSystemSpeechLanguage::english, clock.now(), true}};
        live.savedTranscriptID = countedUuid(identity);
        return store.save(live, settings);
    }
};

const auto saveOperation = QStringLiteral("save");
const auto updateOperation = QStringLiteral("update");
const auto removeOperation = QStringLiteral("remove");

/// What this program does as a child: one operation, up to a step.
int operateAsChild(const QString &root, const QString &operation, int step)
{
    Library library(root);
    fatalStep = step;
    if (operation == saveOperation) {
        library.save(3, "three");
    } else if (operation == updateOperation) {
        TranscriptDocument document = library.store.loadRecord(countedUuid(1));
        document.metadata.title = QStringLiteral("updated");
        document.lines.first().sourceText = QStringLiteral("updated");
        library.store.update(document);
    } else {
        library.store.remove(library.store.loadRecord(countedUuid(1)).metadata);
    }
    return 0;
}

} // namespace

/// Kills a process at every single step of writing, one after another, and looks at what it leaves.
class TranscriptLibraryCrashTest : public QObject
{
    Q_OBJECT

private slots:
    void everyTranscriptOfTheIndexCanBeReadAfterEveryStep_data();
    void everyTranscriptOfTheIndexCanBeReadAfterEveryStep();
};

void TranscriptLibraryCrashTest::everyTranscriptOfTheIndexCanBeReadAfterEveryStep_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("recordsBefore");
    QTest::addColumn<int>("recordsAfter");
    QTest::newRow("save") << saveOperation << 2 << 3;
    QTest::newRow("update") << updateOperation << 2 << 2;
    QTest::newRow("remove") << removeOperation << 2 << 1;
}

void TranscriptLibraryCrashTest::everyTranscriptOfTheIndexCanBeReadAfterEveryStep()
{
    QFETCH(const QString, operation);
    QFETCH(const int, recordsBefore);
    QFETCH(const int, recordsAfter);
    int step = 0;
    for (bool hasEnded = false; !hasEnded;) {
        const QTemporaryDir folder;
        {
            Library library(folder.path());
            library.save(1, "one");
            library.save(2, "two");
        }
        ++step;
        ChildProcess child(QCoreApplication::applicationFilePath(),
            {QStringLiteral("--operate"), folder.path(), operation, QString::number(step)});
        hasEnded = child.wait() == 0;

        Library library(folder.path());
        QVERIFY2(!library.store.lastErrorMessage(),
            qPrintable(library.store.lastErrorMessage().value_or(QString())));
        const auto records = library.store.records();
        QVERIFY2(records.size() == recordsBefore || records.size() == recordsAfter,
            qPrintable(QString::number(step)));
        if (hasEnded) {
            QCOMPARE(records.size(), recordsAfter);
        }
        for (const TranscriptRecordMetadata &record : records) {
            QCOMPARE(library.store.loadRecord(record.id).lines.size(), 1);
        }
        // What the index does not name is gone.
        const auto folders
            = QDir(folder.filePath(QStringLiteral("sessions"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(folders.size(), records.size());
        // The next change works as if nothing had happened.
        library.save(4, "four");
        QCOMPARE(Library(folder.path()).store.records().size(), records.size() + 1);
    }
    QVERIFY2(step > 10, qPrintable(QString::number(step)));
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && arguments.at(1) == QLatin1String("--operate")) {
        return operateAsChild(arguments.at(2), arguments.at(3), arguments.at(4).toInt());
    }
    TranscriptLibraryCrashTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "TranscriptLibraryCrashTest.moc"
