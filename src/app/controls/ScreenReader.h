#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// What a screen reader is told that the toolkit does not tell by itself. Main thread.
class ScreenReader final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The keyboard has come to something that does not have it itself, such as a row of the list that has.
    Q_INVOKABLE static void comeTo(QObject *item);
    /// Puts the rows of a list into the order in which they are seen; they are found in the one in which
    /// they were made or used again. To be called by a row whose `index` has changed.
    Q_INVOKABLE static void keepInOrder(QQuickItem *row);
};

} // namespace lumaphone
