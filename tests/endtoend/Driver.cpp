#include "endtoend/Driver.h"

#include "support/VisibleItems.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeySequence>
#include <QQuickWindow>
#include <QScreen>
#include <QSet>
#include <QTest>
#include <QUrl>

#include <unistd.h>

#include <cstdio>
#include <stdexcept>

namespace lumaphone::test {

namespace {

constexpr int patienceMs = 60000;

/// Waits until `condition` holds; throws what it waited for, and what `seen` says there is, if it never does.
template<typename Condition, typename Seen> void await(Condition condition, const QString &what, Seen seen)
{
    if (!QTest::qWaitFor(condition, patienceMs)) {
        throw std::runtime_error((what + QStringLiteral("; there is: ") + seen()).toStdString());
    }
}

template<typename Condition> void await(Condition condition, const QString &what)
{
    await(condition, what, [] { return QStringLiteral("nothing"); });
}

QQuickWindow *windowTitled(const QString &title)
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        auto *quickWindow = qobject_cast<QQuickWindow *>(window);
        if (quickWindow && quickWindow->isVisible() && quickWindow->title() == title) {
            return quickWindow;
        }
    }
    return nullptr;
}

QQuickWindow &mainWindow()
{
    await([] { return windowTitled(QStringLiteral("Lumaphone")) != nullptr; }, QStringLiteral("no window"));
    return *windowTitled(QStringLiteral("Lumaphone"));
}

/// What the toolkit shows for a file dialog where the desktop has none of its own.
QObject *fileDialogIn(const QQuickItem &item)
{
    if (item.isVisible() && item.parent() && item.parent()->inherits("QQuickFileDialogImpl")) {
        return item.parent();
    }
    for (const QQuickItem *child : item.childItems()) {
        if (auto *found = fileDialogIn(*child)) {
            return found;
        }
    }
    return nullptr;
}

/// Newer versions of the toolkit give the dialog a window of its own.
QObject *openFileDialog()
{
    for (QWindow *window : QGuiApplication::allWindows()) {
        auto *quickWindow = qobject_cast<QQuickWindow *>(window);
        if (quickWindow && quickWindow->isVisible()) {
            if (auto *dialog = fileDialogIn(*quickWindow->contentItem())) {
                return dialog;
            }
        }
    }
    return nullptr;
}

/// Everything below an item that takes the keys when Tab comes to it.
QList<QQuickItem *> tabStopsIn(QQuickItem &item)
{
    if (!item.isVisible() || !item.isEnabled()) {
        return {};
    }
    QList<QQuickItem *> found;
    for (QQuickItem *child : item.childItems()) {
        found += tabStopsIn(*child);
    }
    // A scope hands the keys on to what is in it.
    if (item.activeFocusOnTab() && (!item.isFocusScope() || found.isEmpty())) {
        found.append(&item);
    }
    return found;
}

/// The sheet on top of the window, or all of it.
QQuickItem &topOf(QQuickWindow &window)
{
    QQuickItem *top = window.contentItem();
    for (QQuickItem *layer : window.contentItem()->childItems()) {
        if (!layer->inherits("QQuickOverlay")) {
            continue;
        }
        for (QQuickItem *child : layer->childItems()) {
            const bool isModal = child->parent() && child->parent()->property("modal").toBool();
            if (child->isVisible() && isModal) {
                top = child;
            }
        }
    }
    return *top;
}

QString accessibleName(QQuickItem &item)
{
    const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&item);
    if (!interface) {
        return {};
    }
    // The toolkit gives no names of secret fields.
    return interface->text(interface->state().passwordEdit ? QAccessible::Description : QAccessible::Name);
}

QString described(const QQuickItem &item)
{
    const QString name = item.objectName();
    return name.isEmpty() ? QString::fromLatin1(item.metaObject()->className()) : name;
}

/// All texts that an item shows.
QString textIn(const QQuickItem &item)
{
    if (!item.isVisible()) {
        return {};
    }
    QString text = item.property("text").toString();
    for (const QQuickItem *child : item.childItems()) {
        text += QLatin1Char('\n') + textIn(*child);
    }
    return text;
}

} // namespace

Driver::Driver()
    : m_input(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&m_input, &QSocketNotifier::activated, this, &Driver::read);
}

QQuickItem *Driver::find(const QString &name) const
{
    auto *window = windowTitled(QStringLiteral("Lumaphone"));
    return window ? findVisible(window->contentItem(), name) : nullptr;
}

QQuickItem &Driver::usable(const QString &name) const
{
    await(
        [this, &name] {
            const auto *item = find(name);
            return item && item->isEnabled() && item->width() > 0;
        },
        name + QStringLiteral(" cannot be used"));
    return *find(name);
}

void Driver::click(QQuickWindow &window, const QString &name) const
{
    QQuickItem &item = usable(name);
    drawFrame(window);
    const QPointF middle = item.mapToScene({item.width() / 2, item.height() / 2});
    QTest::mouseClick(&window, Qt::LeftButton, {}, middle.toPoint());
}

void Driver::choose(QQuickWindow &window, const QString &picker, const QString &value) const
{
    click(window, picker);
    const QString choice = picker + QStringLiteral(".choices.") + value;
    click(window, choice);
    await([&] { return find(choice) == nullptr; }, picker + QStringLiteral(" stays open"));
}

QString Driver::walk(QQuickWindow &window)
{
    QQuickItem &top = topOf(window);
    const QList<QQuickItem *> stops = tabStopsIn(top);
    QSet<QQuickItem *> reached;
    // Some stops stand for several, such as a list; none takes more than two steps.
    for (qsizetype step = 0; step < 2 * stops.size() + 2; ++step) {
        QTest::keyClick(&window, Qt::Key_Tab);
        for (QQuickItem *item = window.activeFocusItem(); item; item = item->parentItem()) {
            reached.insert(item);
        }
    }
    QStringList faults;
    for (QQuickItem *stop : stops) {
        if (accessibleName(*stop).isEmpty()) {
            faults.append(described(*stop) + QStringLiteral(" has no name"));
        }
        if (!reached.contains(stop)) {
            faults.append(described(*stop) + QStringLiteral(" is not reached"));
        }
    }
    if (stops.isEmpty() || !faults.isEmpty()) {
        throw std::runtime_error(QStringLiteral("%1 stops; %2")
                                     .arg(stops.size())
                                     .arg(faults.join(QStringLiteral(", ")))
                                     .toStdString());
    }
    return QString::number(stops.size());
}

void Driver::read()
{
    char buffer[4096];
    const ssize_t length = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (length <= 0) {
        m_input.setEnabled(false);
        return;
    }
    m_unread.append(buffer, length);
    if (m_isBusy) {
        return; // the command under way waits in an event loop of its own
    }
    m_isBusy = true;
    for (qsizetype end = m_unread.indexOf('\n'); end >= 0; end = m_unread.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_unread.left(end));
        m_unread.remove(0, end + 1);
        QString answer;
        try {
            answer = QStringLiteral("ok ")
                + obey(line.section(QLatin1Char(' '), 0, 0), line.section(QLatin1Char(' '), 1, 1),
                    line.section(QLatin1Char(' '), 2));
        } catch (const std::exception &error) {
            answer = QStringLiteral("failed ") + QString::fromStdString(error.what());
        }
        std::printf("%s\n", qUtf8Printable(answer.simplified()));
        std::fflush(stdout);
    }
    m_isBusy = false;
}

QString Driver::obey(const QString &command, const QString &name, const QString &rest)
{
    QQuickWindow &window = mainWindow();
    if (command == QStringLiteral("click")) {
        click(window, name);
        return {};
    }
    if (command == QStringLiteral("press")) {
        // Shortcuts are for the window that has the focus.
        await([&window] { return window.isActive(); }, QStringLiteral("the window has no focus"));
        const QKeyCombination keys = QKeySequence(name)[0];
        QTest::keyClick(&window, keys.key(), keys.keyboardModifiers());
        return {};
    }
    if (command == QStringLiteral("type")) {
        QQuickItem &field = usable(name + QStringLiteral(".field"));
        await([&] { return field.forceActiveFocus(), field.hasActiveFocus(); },
            name + QStringLiteral(" takes no focus"));
        QMetaObject::invokeMethod(&field, "selectAll");
        QTest::keyClick(&window, Qt::Key_Delete);
        for (const QChar character : rest) {
            // The window itself may lose the focus for a moment.
            await([&] { return field.hasActiveFocus(); }, name + QStringLiteral(" lost the focus"));
            QTest::sendKeyEvent(QTest::Click, &window, Qt::Key_unknown, QString(character), Qt::NoModifier);
        }
        const QString typed = field.property("text").toString();
        if (typed != rest) {
            const QQuickItem *focused = window.activeFocusItem();
            throw std::runtime_error(
                QStringLiteral("there is now \"%1\", the keys go to %2")
                    .arg(typed, focused ? focused->objectName() : QStringLiteral("nothing"))
                    .toStdString());
        }
        return typed;
    }
    if (command == QStringLiteral("choose")) {
        choose(window, name, rest);
        return {};
    }
    if (command == QStringLiteral("await")) {
        const auto text = [this, &name] {
            const QQuickItem *item = find(name);
            return item ? textIn(*item) : QString();
        };
        await([&] { return text().contains(rest); }, QStringLiteral("%1 never said \"%2\"").arg(name, rest),
            text);
        return text();
    }
    if (command == QStringLiteral("shown")) {
        await([&] { return find(name) != nullptr; }, name + QStringLiteral(" was never shown"));
        return {};
    }
    if (command == QStringLiteral("gone")) {
        await([&] { return find(name) == nullptr; }, name + QStringLiteral(" stayed"));
        return {};
    }
    if (command == QStringLiteral("panel")) {
        const QString text = (name + QLatin1Char(' ') + rest).trimmed();
        const auto panel = [] {
            return windowTitled(QStringLiteral("Lumaphone Floating Captions"));
        };
        const auto shown = [&panel] {
            return panel() ? textIn(*panel()->contentItem()) : QStringLiteral("no panel");
        };
        await([&] { return text.isEmpty() ? !panel() : panel() && shown().contains(text); },
            QStringLiteral("the panel never showed \"%1\"").arg(text), shown);
        return {};
    }
    if (command == QStringLiteral("count")) {
        const auto count = [this, &name] {
            return find(name) ? find(name)->property("count").toString() : QStringLiteral("no list");
        };
        await([&] { return count() == rest; }, QStringLiteral("%1 never had %2 rows").arg(name, rest), count);
        return {};
    }
    if (command == QStringLiteral("file")) {
        auto *dialog = window.findChild<QObject *>(name);
        await([&] { return dialog && dialog->property("visible").toBool(); },
            name + QStringLiteral(" was never opened"));
        await([] { return openFileDialog() != nullptr; },
            QStringLiteral("the file dialog is not the toolkit's own"));
        QObject &popup = *openFileDialog();
        popup.setProperty("selectedFile", QUrl::fromLocalFile(rest));
        QMetaObject::invokeMethod(&popup, "accept");
        await([&] { return !dialog->property("visible").toBool(); }, name + QStringLiteral(" stayed"));
        return {};
    }
    if (command == QStringLiteral("keyboard")) {
        await([&window] { return window.isActive(); }, QStringLiteral("the window has no focus"));
        return walk(window);
    }
    if (command == QStringLiteral("focus")) {
        const auto focused = [&window] {
            return window.activeFocusItem() ? described(*window.activeFocusItem())
                                            : QStringLiteral("nothing");
        };
        await(
            [&] { return focused() == name; }, QStringLiteral("the keys do not go to %1").arg(name), focused);
        return {};
    }
    if (command == QStringLiteral("frame")) {
        QSignalSpy frames(&window, &QQuickWindow::frameSwapped);
        window.update();
        await([&] { return !frames.isEmpty(); }, QStringLiteral("no frame"));
        return {};
    }
    if (command == QStringLiteral("platform")) {
        return QGuiApplication::platformName();
    }
    if (command == QStringLiteral("fill")) {
        window.showFullScreen();
        await([&window] { return window.size() == window.screen()->size(); },
            QStringLiteral("the window does not fill the screen"));
        return {};
    }
    if (command == QStringLiteral("active")) {
        await([&window] { return window.isActive(); }, QStringLiteral("the window has no focus"));
        return {};
    }
    if (command == QStringLiteral("close")) {
        QMetaObject::invokeMethod(&window, "close", Qt::QueuedConnection);
        return {};
    }
    throw std::runtime_error("unknown command");
}

} // namespace lumaphone::test
