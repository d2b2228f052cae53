#pragma once

#include <QCoreApplication>
#include <QTest>

/// The tests of a folder are one program, `lumaphone-tests-<folder> TEST [OPTION...]`, of which every run is
/// one test class. A source of it has a namespace of its own, since several are compiled as one:
///
///     namespace recordtest {
///     class RecordTest : public QObject …
///     LUMAPHONE_TEST(RecordTest)
///     } // namespace recordtest
///     #include "RecordTest.moc"
namespace lumaphone::test {

using TestRun = int (*)(int argc, char *argv[]);

/// What the program does when it is started with `name`.
class RegisteredTest
{
public:
    RegisteredTest(const char *name, TestRun run);
};

template<typename Test> int runTest(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

template<int (*role)(const QStringList &)> int runChild(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return role(QCoreApplication::arguments().mid(1));
}

} // namespace lumaphone::test

/// `run` is a TestRun that may need more than runTest() does.
#define LUMAPHONE_TEST_RUN_BY(Test, run)                                                                     \
    static const lumaphone::test::RegisteredTest registered##Test(#Test, run);

#define LUMAPHONE_TEST(Test) LUMAPHONE_TEST_RUN_BY(Test, &lumaphone::test::runTest<Test>)

/// What a test does that starts its own program as another process: `role` is int(const QStringList
/// &arguments), and the child is started with the arguments "Test.child", ….
#define LUMAPHONE_TEST_CHILD(Test, role)                                                                     \
    static const lumaphone::test::RegisteredTest registered##Test##Child(                                    \
        #Test ".child", &lumaphone::test::runChild<role>);
