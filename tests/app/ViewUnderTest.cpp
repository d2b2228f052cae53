#include "app/ViewUnderTest.h"

#include "app/QmlEngineSetup.h"
#include "support/Coroutines.h"
#include "support/VisibleItems.h"

#include <QDir>
#include <QQmlComponent>
#include <QTest>

#include <memory>

namespace lumaphone::test {

ViewUnderTest::ViewUnderTest(
    const QString &module, const QString &component, const QVariantMap &properties, QSize size)
{
    setUpQmlEngine(m_engine);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.setInitialProperties(properties);
    m_view.resize(size);
    QQmlComponent view(&m_engine);
    view.setData(QStringLiteral("import Lumaphone.%1\n%2 {}").arg(module, component).toUtf8(), QUrl());
    if (!view.isReady()) {
        qFatal("%s", qPrintable(view.errorString()));
    }
    QObject *root = view.createWithInitialProperties(properties);
    auto *item = qobject_cast<QQuickItem *>(root);
    if (item == nullptr) {
        // A sheet, which opens over an empty window.
        QQmlComponent window(&m_engine);
        window.setData(
            "import QtQuick\nimport Lumaphone.Controls\nRectangle { color: Theme.window }", QUrl());
        item = qobject_cast<QQuickItem *>(window.create());
        root->setParent(item);
    }
    m_view.setContent(QUrl(), nullptr, item);
    m_view.show();
    m_view.requestActivate();
    if (!QTest::qWaitForWindowActive(&m_view)) {
        qFatal("The window does not become active");
    }
    if (root != item) {
        root->setProperty("parent", QVariant::fromValue(item));
        QMetaObject::invokeMethod(root, "open");
    }
    settle();
}

ViewUnderTest::~ViewUnderTest() = default;

QQuickItem *ViewUnderTest::find(const QString &objectName) const
{
    return findVisible(m_view.contentItem(), objectName);
}

QString ViewUnderTest::textOf(const QString &objectName) const
{
    QQuickItem *item = find(objectName);
    if (item == nullptr) {
        return {};
    }
    const QVariant text = item->property("text");
    const QVariant title = item->property("title");
    return text.isValid() ? text.toString() : title.toString();
}

bool ViewUnderTest::click(const QString &objectName)
{
    return clickOn(m_view, objectName);
}

bool ViewUnderTest::type(const QString &objectName, const QString &text)
{
    QQuickItem *field = find(objectName + QStringLiteral(".field"));
    if (field == nullptr) {
        return false;
    }
    field->forceActiveFocus();
    QTest::keyClick(&m_view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&m_view, Qt::Key_Delete);
    for (const QChar character : text) {
        QTest::sendKeyEvent(QTest::Click, &m_view, Qt::Key_unknown, QString(character), Qt::NoModifier);
    }
    settle();
    return true;
}

void ViewUnderTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(&m_view, key, modifiers);
    settle();
    drawFrame(m_view);
}

QString ViewUnderTest::focusedName() const
{
    const QQuickItem *item = m_view.activeFocusItem();
    return item == nullptr ? QString() : item->objectName();
}

void ViewUnderTest::setDark(bool isDark)
{
    QQmlComponent light(&m_engine);
    light.setData("import QtQuick\nimport Lumaphone.Controls\n"
                  "QtObject { property bool isDark\n onIsDarkChanged: Theme.isDark = isDark }",
        QUrl());
    if (!light.isReady()) {
        qFatal("%s", qPrintable(light.errorString()));
    }
    const std::unique_ptr<QObject> lightSwitch(light.create());
    lightSwitch->setProperty("isDark", !isDark);
    lightSwitch->setProperty("isDark", isDark);
    settle();
}

void ViewUnderTest::photograph(const QString &name)
{
    const QString folder = qEnvironmentVariable("LUMAPHONE_PHOTOGRAPHS");
    if (folder.isEmpty()) {
        return;
    }
    QDir().mkpath(folder);
    QTest::qWait(300); // for what is still fading in
    m_view.grabWindow().save(QStringLiteral("%1/%2.png").arg(folder, name));
}

} // namespace lumaphone::test
