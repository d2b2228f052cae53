#pragma once

#include <QObject>
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
};

} // namespace lumaphone
