#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// The families whose glyphs a language's readers expect: the same character looks different in Tokyo and
/// Taipei.
class LanguageFonts final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// For text in a source language, by its raw value, such as "japanese". Anything else means Taiwan's
    /// Traditional Chinese, the interface itself among it.
    Q_INVOKABLE static QString familyOf(const QString &language);
};

} // namespace lumaphone
