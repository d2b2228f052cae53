#include "platform/desktop/DesktopFileViewer.h"

#include "base/AtomicFile.h"
#include "support/Coroutines.h"
#include "support/PrivateSessionBus.h"
#include "support/program/TestProgram.h"

#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace desktopfileviewertest {

using namespace lumaphone;
using namespace lumaphone::test;

/// A file manager on the bus that notes what it is asked to show.
class NotingFileManager : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    NotingFileManager()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("file manager")))
    {
        m_bus.registerObject(
            QStringLiteral("/org/freedesktop/FileManager1"), this, QDBusConnection::ExportScriptableSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.FileManager1"));
    }
    ~NotingFileManager() override
    {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.FileManager1"));
        QDBusConnection::disconnectFromBus(QStringLiteral("file manager"));
    }

    QStringList shown;
    QStringList opened;

public slots:
    Q_SCRIPTABLE void ShowItems(const QStringList &uris, const QString &) // NOLINT: the bus's name
    {
        shown += uris;
    }
    Q_SCRIPTABLE void ShowFolders(const QStringList &uris, const QString &) // NOLINT: the bus's name
    {
        opened += uris;
    }

private:
    QDBusConnection m_bus;
};

class DesktopFileViewerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theFileManagerShowsTheItem();
    void withoutAFileManagerTheFolderIsOpened_data();
    void withoutAFileManagerTheFolderIsOpened();
    void ofAMissingFileTheFolderIsOpened();
    void aMissingFolderIsSaid();
    void anOpenerThatIsMissingIsSaid();

private:
    /// A program that writes its argument to a file, by renaming: whoever sees the file sees all of it.
    QString noter() const
    {
        const QString program = m_folder->filePath(QStringLiteral("opener"));
        const QByteArray note = QFile::encodeName(m_folder->filePath(QStringLiteral("opened")));
        replaceFile(program,
            "#!/bin/sh\nprintf %s \"$1\" > '" + note + ".new'\nmv '" + note + ".new' '" + note + "'\n",
            Durability::renamed);
        QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner);
        return program;
    }

    PrivateSessionBus m_bus;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void DesktopFileViewerTest::init()
{
    QVERIFY(m_bus.isRunning());
    m_folder = std::make_unique<QTemporaryDir>();
}

void DesktopFileViewerTest::theFileManagerShowsTheItem()
{
    NotingFileManager manager;
    const QString path = m_folder->filePath(QStringLiteral("字幕 #1 100%"));
    createFolder(path);
    DesktopFileViewer viewer(QStringLiteral("/gone"));
    test::waitFor(viewer.reveal(path));
    QCOMPARE(manager.shown, QStringList {QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())});
    QCOMPARE(QUrl(manager.shown.first()).toLocalFile(), path);
}

void DesktopFileViewerTest::withoutAFileManagerTheFolderIsOpened_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("a folder itself") << true;
    QTest::newRow("the folder of a file") << false;
}

void DesktopFileViewerTest::withoutAFileManagerTheFolderIsOpened()
{
    QFETCH(const bool, isFolder);
    const QString folder = m_folder->filePath(QStringLiteral("字幕 folder"));
    createFolder(folder);
    const QString file = folder + QStringLiteral("/file.txt");
    replaceFile(file, "", Durability::renamed);
    DesktopFileViewer viewer(noter());
    test::waitFor(viewer.reveal(isFolder ? folder : file));
    const QString note = m_folder->filePath(QStringLiteral("opened"));
    QVERIFY(waitUntil([&note] { return QFile::exists(note); }));
    QCOMPARE(QString::fromUtf8(readFile(note).value_or(QByteArray())), folder);
}

void DesktopFileViewerTest::ofAMissingFileTheFolderIsOpened()
{
    NotingFileManager manager;
    DesktopFileViewer viewer(QStringLiteral("/gone"));
    test::waitFor(viewer.reveal(m_folder->filePath(QStringLiteral("not yet"))));
    QCOMPARE(manager.opened, QStringList {QUrl::fromLocalFile(m_folder->path()).toString()});
    QVERIFY(manager.shown.isEmpty());
}

void DesktopFileViewerTest::aMissingFolderIsSaid()
{
    NotingFileManager manager;
    DesktopFileViewer viewer(QStringLiteral("/gone"));
    const QString path = m_folder->filePath(QStringLiteral("gone/file"));
    const auto error = thrownBy<FileViewerError>([&] { test::waitFor(viewer.reveal(path)); });
    QVERIFY(error);
    QCOMPARE(error->errorDescription(), QStringLiteral("找不到「%1」。").arg(path));
    QVERIFY(manager.shown.isEmpty() && manager.opened.isEmpty());
}

void DesktopFileViewerTest::anOpenerThatIsMissingIsSaid()
{
    DesktopFileViewer viewer(m_folder->filePath(QStringLiteral("gone")));
    const auto error = thrownBy<FileViewerError>([&] { test::waitFor(viewer.reveal(m_folder->path())); });
    QVERIFY(error);
    QCOMPARE(error->errorDescription(), QStringLiteral("無法開啟資料夾「%1」。").arg(m_folder->path()));
}

LUMAPHONE_TEST(DesktopFileViewerTest)

} // namespace desktopfileviewertest

#include "DesktopFileViewerTest.moc"
