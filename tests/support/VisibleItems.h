#pragma once

#include "support/Coroutines.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QString>
#include <QTest>

namespace lumaphone::test {

/// The visible item of that name in or below `item`, of several the one in front; none if there is none.
inline QQuickItem *findVisible(QQuickItem *item, const QString &objectName)
{
    if (!item->isVisible()) {
        return nullptr;
    }
    const QList<QQuickItem *> children = item->childItems();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        if (QQuickItem *found = findVisible(*child, objectName)) {
            return found;
        }
    }
    return item->objectName() == objectName ? item : nullptr;
}

/// The text of the tooltip that is shown; empty if there is none.
inline QString shownTooltip(const QQuickWindow &window)
{
    for (const QObject *object : window.findChildren<QObject *>()) {
        if (object->inherits("QQuickToolTip") && object->property("visible").toBool()) {
            return object->property("text").toString();
        }
    }
    return {};
}

/// Lets tooltips come as soon as the pointer rests, those too that should not come.
inline void hurryTooltips(const QQuickWindow &window)
{
    for (QObject *object : window.findChildren<QObject *>()) {
        if (object->inherits("QQuickToolTip")) {
            object->setProperty("delay", 0);
        }
    }
}

/// Whatever has changed has its place when a frame has been drawn.
inline void drawFrame(QQuickWindow &window)
{
    QSignalSpy frames(&window, &QQuickWindow::frameSwapped);
    window.update();
    frames.wait(1000);
}

/// The user's pointer: clicks into the middle of what is visible under that name, menus and sheets included,
/// once it is there and can be used. False if it never is.
inline bool clickOn(QQuickWindow &window, const QString &objectName)
{
    QQuickItem *item = nullptr;
    // Menus and sheets take a moment to open.
    const auto isUsable = [&] {
        item = findVisible(window.contentItem(), objectName);
        return item != nullptr && item->isEnabled() && item->width() > 0;
    };
    if (!waitUntil(isUsable)) {
        return false;
    }
    drawFrame(window);
    const QPointF middle = item->mapToScene({item->width() / 2, item->height() / 2});
    QTest::mouseClick(&window, Qt::LeftButton, {}, middle.toPoint());
    settle();
    return true;
}

} // namespace lumaphone::test
