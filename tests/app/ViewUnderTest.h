#pragma once

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QString>
#include <QVariantMap>

namespace lumaphone::test {

/// A view of the program in a window of its own, driven by object names.
class ViewUnderTest
{
public:
    /// A view and its module, such as "TranscriptLibraryWorkspace" of "Library".
    ViewUnderTest(const QString &module, const QString &component, const QVariantMap &properties,
        QSize size = QSize(1280, 800));
    ~ViewUnderTest();

    QQuickView &window() { return m_view; }
    QQmlEngine &engine() { return m_engine; }

    /// The visible item of that name, menus and sheets included; none if there is no such item.
    QQuickItem *find(const QString &objectName) const;
    bool isShown(const QString &objectName) const { return find(objectName) != nullptr; }
    /// The visible text of an item or of what is in it.
    QString textOf(const QString &objectName) const;
    /// Clicks into the middle of an item. False if it is not there.
    bool click(const QString &objectName);
    /// Gives the keyboard to the field of that name and replaces its text.
    bool type(const QString &objectName, const QString &text);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    QString focusedName() const;
    /// Light or dark.
    void setDark(bool isDark);
    /// Writes what is seen to a file, if the environment names a folder for such pictures in
    /// LUMAPHONE_PHOTOGRAPHS.
    void photograph(const QString &name);

private:
    QQmlEngine m_engine;
    QQuickView m_view {&m_engine, nullptr};
};

} // namespace lumaphone::test
