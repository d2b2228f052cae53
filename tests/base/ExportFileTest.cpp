#include "base/ExportFile.h"

#include "support/FileSizeLimit.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <future>

namespace exportfiletest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class ExportFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void aNewFileHasTheModeThatTheUmaskAllows_data()
    {
        QTest::addColumn<int>("mask");
        QTest::addColumn<int>("mode");
        QTest::newRow("for the group to read") << 027 << 0640;
        QTest::newRow("for everybody to read") << 022 << 0644;
        QTest::newRow("private") << 077 << 0600;
    }
    void aNewFileHasTheModeThatTheUmaskAllows()
    {
        QFETCH(int, mask);
        QFETCH(int, mode);
        const mode_t former = ::umask(mode_t(mask));
        exportFile(path("a.txt"), "words");
        ::umask(former);
        QCOMPARE(int(modeOf(path("a.txt"))), mode);
        QCOMPARE(readFile(path("a.txt")), std::optional<QByteArray>("words"));
        QCOMPARE(entries(), QStringList {"a.txt"});
    }

    void aFileThatIsReplacedKeepsItsMode()
    {
        exportFile(path("a.txt"), "old");
        QCOMPARE(::chmod(path("a.txt").toLocal8Bit().constData(), 0604), 0);
        exportFile(path("a.txt"), "new");
        QCOMPARE(int(modeOf(path("a.txt"))), 0604);
        QCOMPARE(readFile(path("a.txt")), std::optional<QByteArray>("new"));
        QCOMPARE(entries(), QStringList {"a.txt"});
    }

    void aSymbolicLinkIsFollowed_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("to a file") << true;
        QTest::newRow("to nothing yet") << false;
    }
    void aSymbolicLinkIsFollowed()
    {
        QFETCH(bool, exists);
        QVERIFY(QDir(m_folder->path()).mkdir("elsewhere"));
        if (exists) {
            exportFile(path("elsewhere/a.txt"), "old");
        }
        QVERIFY(QFile::link("elsewhere/a.txt", path("link.txt")));
        exportFile(path("link.txt"), "new");
        QVERIFY(QFileInfo(path("link.txt")).isSymLink());
        QCOMPARE(readFile(path("elsewhere/a.txt")), std::optional<QByteArray>("new"));
    }

    void aNameMayBeNearlyAsLongAsTheFileSystemAllows()
    {
        const QString name(248, 'a');
        exportFile(path(name), "old");
        exportFile(path(name), "new");
        QCOMPARE(readFile(path(name)), std::optional<QByteArray>("new"));
        QCOMPARE(entries(), QStringList {name});
    }

    void aRingOfLinksIsRefused()
    {
        QVERIFY(QFile::link("b", path("a")));
        QVERIFY(QFile::link("a", path("b")));
        QCOMPARE(errorOf(path("a")), ELOOP);
    }

    void aPipeIsWrittenInto()
    {
        QCOMPARE(::mkfifo(path("pipe").toLocal8Bit().constData(), 0600), 0);
        auto reader = std::async(std::launch::async, [this] { return readFile(path("pipe")); });
        exportFile(path("pipe"), "words");
        QCOMPARE(reader.get(), std::optional<QByteArray>("words"));
        exportFile("/dev/null", "words");
    }

    void whatCannotBeWrittenIsAsBefore()
    {
        QCOMPARE(errorOf(path("missing/a.txt")), ENOENT);
        QCOMPARE(errorOf(m_folder->path()), EISDIR);
        exportFile(path("a.txt"), "old");
        {
            const FileSizeLimit limit(10);
            QCOMPARE(errorOf(path("a.txt"), QByteArray(1000, 'x')), EFBIG);
        }
        QCOMPARE(readFile(path("a.txt")), std::optional<QByteArray>("old"));
        QCOMPARE(entries(), QStringList {"a.txt"});
    }

    void aWriteProtectedFileIsNotReplaced()
    {
        if (::geteuid() == 0) {
            QSKIP("Nothing is protected from the administrator.");
        }
        exportFile(path("a.txt"), "old");
        QCOMPARE(::chmod(path("a.txt").toLocal8Bit().constData(), 0400), 0);
        QCOMPARE(errorOf(path("a.txt")), EACCES);
        QCOMPARE(readFile(path("a.txt")), std::optional<QByteArray>("old"));
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList entries() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    /// What the system says; 0 if it was written.
    static int errorOf(const QString &path, const QByteArray &bytes = "x")
    {
        try {
            exportFile(path, bytes);
            return 0;
        } catch (const FileError &error) {
            return error.errorNumber();
        }
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

LUMAPHONE_TEST(ExportFileTest)

} // namespace exportfiletest

#include "ExportFileTest.moc"
