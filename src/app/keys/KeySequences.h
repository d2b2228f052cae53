#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// Keys of the keyboard by their names, such as "Ctrl+Return".
class KeySequences final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Whether a key that is pressed with these modifiers is one of `sequences`.
    Q_INVOKABLE static bool contains(const QStringList &sequences, int key, int modifiers);
    /// As they stand on a keyboard in Taiwan, each once.
    Q_INVOKABLE static QStringList labels(const QStringList &sequences);
};

} // namespace lumaphone
