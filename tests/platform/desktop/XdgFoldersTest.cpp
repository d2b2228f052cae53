#include "platform/desktop/XdgFolders.h"

#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

#include <map>

namespace xdgfolderstest {

using namespace lumaphone;

class XdgFoldersTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void eachFolderFollowsItsVariable_data();
    void eachFolderFollowsItsVariable();
    void withoutAHomeVariableTheUsersEntryCounts();
    void theRuntimeFolderMustExist();

private:
    std::map<QByteArray, QByteArray> m_former;
};

void XdgFoldersTest::initTestCase()
{
    for (const char *variable :
        {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        m_former[variable] = qgetenv(variable);
    }
}

void XdgFoldersTest::cleanup()
{
    for (const auto &[variable, value] : m_former) {
        qputenv(variable.constData(), value);
    }
}

void XdgFoldersTest::eachFolderFollowsItsVariable_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<QByteArray>("cache");
    QTest::addColumn<QStringList>("wanted");
    const QStringList usual {"/home/someone/.local/share", "/home/someone/.config", "/home/someone/.cache"};
    QTest::newRow("unset") << QByteArray() << QByteArray() << QByteArray() << usual;
    QTest::newRow("empty") << QByteArray("") << QByteArray("") << QByteArray("") << usual;
    QTest::newRow("relative ones do not count")
        << QByteArray("data") << QByteArray("./config") << QByteArray("../cache") << usual;
    QTest::newRow("absolute") << QByteArray("/d/資料") << QByteArray("/c") << QByteArray("/快取")
                              << QStringList {"/d/資料", "/c", "/快取"};
    QTest::newRow("trailing slash") << QByteArray("/d/") << QByteArray("/c//") << QByteArray("/e/")
                                    << QStringList {"/d", "/c", "/e"};
}

void XdgFoldersTest::eachFolderFollowsItsVariable()
{
    QFETCH(const QByteArray, data);
    QFETCH(const QByteArray, config);
    QFETCH(const QByteArray, cache);
    QFETCH(const QStringList, wanted);
    const auto set = [](const char *variable, const QByteArray &value) {
        value.isNull() ? qunsetenv(variable) : qputenv(variable, value);
    };
    set("HOME", "/home/someone");
    set("XDG_DATA_HOME", data);
    set("XDG_CONFIG_HOME", config);
    set("XDG_CACHE_HOME", cache);
    QCOMPARE(XdgFolders().applicationSupport().value_or(QString()), wanted[0]);
    QCOMPARE(XdgFolders().configuration().value_or(QString()), wanted[1]);
    QCOMPARE(XdgFolders().cache().value_or(QString()), wanted[2]);
}

void XdgFoldersTest::withoutAHomeVariableTheUsersEntryCounts()
{
    qunsetenv("HOME");
    qunsetenv("XDG_DATA_HOME");
    const auto folder = XdgFolders().applicationSupport();
    QVERIFY(folder);
    QVERIFY2(folder->startsWith(QLatin1Char('/')) && folder->endsWith(QStringLiteral("/.local/share")),
        qPrintable(*folder));
}

void XdgFoldersTest::theRuntimeFolderMustExist()
{
    const QTemporaryDir folder;
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    QCOMPARE(XdgFolders().runtime().value_or(QString()), folder.path());
    qputenv("XDG_RUNTIME_DIR", folder.filePath(QStringLiteral("gone")).toUtf8());
    QVERIFY(!XdgFolders().runtime());
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(!XdgFolders().runtime());
}

LUMAPHONE_TEST(XdgFoldersTest)

} // namespace xdgfolderstest

#include "XdgFoldersTest.moc"
