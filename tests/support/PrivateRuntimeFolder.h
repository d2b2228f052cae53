#pragma once

#include <QTemporaryDir>
#include <QTest>

namespace lumaphone::test {

/// The folder that a login gives to programs with windows, of the test's own. Make it before the application
/// object.
class PrivateRuntimeFolder
{
public:
    PrivateRuntimeFolder() { qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8()); }
    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

} // namespace lumaphone::test

/// main() of a test that needs windows, without a display.
#define LUMAPHONE_OFFSCREEN_TEST_MAIN(Test)                                                                  \
    int main(int argc, char *argv[])                                                                         \
    {                                                                                                        \
        const lumaphone::test::PrivateRuntimeFolder runtimeFolder;                                           \
        qputenv("QT_QPA_PLATFORM", "offscreen");                                                             \
        const QGuiApplication application(argc, argv);                                                       \
        Test test;                                                                                           \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
