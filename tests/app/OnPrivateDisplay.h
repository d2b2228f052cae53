#pragma once

#include "support/PrivateDisplay.h"

#include <QGuiApplication>
#include <QTest>

namespace lumaphone::test {

/// All that main() does for a test that is made with the display its windows are on.
template<typename Test> int runOnPrivateDisplay(int argc, char *argv[])
{
    const PrivateDisplay display;
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    Test test(display);
    return QTest::qExec(&test, argc, argv);
}

} // namespace lumaphone::test
