#include "base/AtomicFile.h"

#include "support/Coroutines.h"
#include "support/FileSizeLimit.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>

namespace atomicfiletest {

using namespace lumaphone;
using lumaphone::test::FileSizeLimit;
using lumaphone::test::thrownBy;

class AtomicFileTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QString inFolder(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }
    QStringList entries() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private slots:
    void cleanup() { QVERIFY(QDir(m_folder.path()).removeRecursively() && QDir().mkpath(m_folder.path())); }

    void aReplacedFileHasTheNewBytesAndNothingLiesBesideIt_data()
    {
        QTest::addColumn<bool>("isFlushed");
        QTest::newRow("renamed") << false;
        QTest::newRow("flushed") << true;
    }
    void aReplacedFileHasTheNewBytesAndNothingLiesBesideIt()
    {
        QFETCH(bool, isFlushed);
        const Durability durability = isFlushed ? Durability::flushed : Durability::renamed;
        const QString path = inFolder("字幕 file.json");
        for (const QByteArray &bytes :
            {QByteArray("first"), QByteArray(3'000'000, 'x'), QByteArray(), QByteArray("\0a", 2)}) {
            replaceFile(path, bytes, durability);
            QCOMPARE(readFile(path), std::optional(bytes));
        }
        QCOMPARE(entries(), QStringList {QStringLiteral("字幕 file.json")});
    }

    void piecesAreWrittenOneAfterAnother()
    {
        const std::array<QByteArrayView, 4> pieces {"one", "", " and ", "two"};
        replaceFile(inFolder("file"), pieces, Durability::renamed);
        QCOMPARE(readFile(inFolder("file")), std::optional(QByteArray("one and two")));
    }

    void whatAKilledProcessLeftIsRemoved()
    {
        for (const char *name : {"file", "file.new-Ab3dE9", "file.new-000000", "file.backup",
                 "file.new-Ab3dE", "other.new-Ab3dE9", "file.new-Ab3dE99"}) {
            replaceFile(inFolder(name), "x", Durability::renamed);
        }
        removeInterruptedReplacements(inFolder("file"));
        QCOMPARE(entries(),
            (QStringList {"file", "file.backup", "file.new-Ab3dE", "file.new-Ab3dE99", "other.new-Ab3dE9"}));
        removeInterruptedReplacements(inFolder("missing/file"));
    }

    /// Which a removal of what was left relies on.
    void aKilledProcessLeavesTheOldFileAndSuchAName()
    {
        replaceFile(inFolder("file"), "old", Durability::renamed);
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            // The first block is written before the limit ends the process.
            const rlimit limit {4096, 4096};
            const rlimit noCore {0, 0};
            ::setrlimit(RLIMIT_CORE, &noCore);
            ::setrlimit(RLIMIT_FSIZE, &limit);
            ::signal(SIGXFSZ, SIG_DFL);
            replaceFile(inFolder("file"), QByteArray(100'000, 'x'), Durability::renamed);
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(entries().size(), 2);
        QCOMPARE(readFile(inFolder("file")), std::optional(QByteArray("old")));
        removeInterruptedReplacements(inFolder("file"));
        QCOMPARE(entries(), QStringList {"file"});
    }

    void aMissingFileIsNone() { QCOMPARE(readFile(inFolder("missing")), std::nullopt); }

    void otherReadingErrorsAreThrown()
    {
        const auto error = thrownBy<FileError>([this] { readFile(m_folder.path()); });
        QVERIFY(error);
        QCOMPARE(error->errorNumber(), EISDIR);
        QCOMPARE(error->path(), m_folder.path());
        QVERIFY(error->errorDescription().contains(m_folder.path()));
    }

    void aFullDiskLeavesTheOldFileAndNoTrace()
    {
        const QString path = inFolder("file");
        replaceFile(path, "old", Durability::renamed);
        {
            const FileSizeLimit limit(4096);
            const auto error = thrownBy<FileError>(
                [&] { replaceFile(path, QByteArray(10'000, 'x'), Durability::flushed); });
            QVERIFY(error);
            QCOMPARE(error->errorNumber(), EFBIG);
        }
        QCOMPARE(readFile(path), std::optional(QByteArray("old")));
        QCOMPARE(entries(), QStringList {QStringLiteral("file")});
    }

    void aMissingFolderIsAnError()
    {
        const auto error = thrownBy<FileError>(
            [this] { replaceFile(inFolder("missing/file"), "x", Durability::renamed); });
        QVERIFY(error);
        QCOMPARE(error->errorNumber(), ENOENT);
        QVERIFY(entries().isEmpty());
    }

    void aFolderInTheFilesPlaceIsAnErrorWithoutTrace()
    {
        createFolder(inFolder("taken"));
        QVERIFY(thrownBy<FileError>([this] { replaceFile(inFolder("taken"), "x", Durability::renamed); }));
        QCOMPARE(entries(), QStringList {QStringLiteral("taken")});
    }

    void foldersAreCreatedWithTheirParents()
    {
        createFolder(inFolder("a/b/c"));
        createFolder(inFolder("a/b/c"));
        QVERIFY(QDir(inFolder("a/b/c")).exists());
        replaceFile(inFolder("file"), "x", Durability::renamed);
        QVERIFY(thrownBy<FileError>([this] { createFolder(inFolder("file/below")); }));
    }

    void removingIsFineForAFileThatIsGone()
    {
        replaceFile(inFolder("file"), "x", Durability::renamed);
        removeFile(inFolder("file"));
        removeFile(inFolder("file"));
        QVERIFY(entries().isEmpty());
        createFolder(inFolder("folder"));
        QVERIFY(thrownBy<FileError>([this] { removeFile(inFolder("folder")); }));
    }

    void aReaderNeverSeesHalfAFile()
    {
        const QString path = inFolder("file");
        replaceFile(path, QByteArray(50'000, 'a'), Durability::renamed);
        std::atomic<bool> isWriting = true;
        std::thread writer([&] {
            for (int i = 0; i < 300; ++i) {
                replaceFile(path, QByteArray(50'000, char('a' + i % 26)), Durability::renamed);
            }
            isWriting = false;
        });
        bool isWhole = true;
        while (isWriting) {
            const auto bytes = readFile(path);
            isWhole = isWhole && bytes && *bytes == QByteArray(50'000, bytes->at(0));
        }
        writer.join();
        QVERIFY(isWhole);
    }
};

LUMAPHONE_TEST(AtomicFileTest)

} // namespace atomicfiletest

#include "AtomicFileTest.moc"
