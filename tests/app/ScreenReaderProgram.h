#pragma once

#include "app/AccessibilityBus.h"
#include "support/PrivateDisplay.h"

#include <QGuiApplication>
#include <QSize>
#include <QTest>

#include <memory>

namespace lumaphone::test {

/// Runs a test that is made of the accessibility bus, which is none if something is missing, on a display of
/// that size.
template<typename Test> int runWithScreenReader(int argc, char *argv[], QSize size = QSize(1440, 900))
{
    // The toolkit asks the desktop before every key, and warns when the answer takes longer than a tenth of a
    // second.
    qunsetenv("QT_FATAL_WARNINGS");
    const PrivateDisplay display(size);
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_QUICK_BACKEND", "software");
    const auto bus = AccessibilityBus::missing().isEmpty() ? std::make_unique<AccessibilityBus>() : nullptr;
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("lumaphone"));
    Test test(bus.get());
    return QTest::qExec(&test, argc, argv);
}

} // namespace lumaphone::test
