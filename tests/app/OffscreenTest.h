#pragma once

#include "support/PrivateRuntimeFolder.h"
#include "support/program/TestProgram.h"

#include <QGuiApplication>

namespace lumaphone::test {

template<typename Test> int runOffscreen(int argc, char *argv[])
{
    const PrivateRuntimeFolder runtimeFolder;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace lumaphone::test

/// A test that needs windows, without a display.
#define LUMAPHONE_OFFSCREEN_TEST(Test) LUMAPHONE_TEST_RUN_BY(Test, &lumaphone::test::runOffscreen<Test>)
