#include "app/OnPrivateDisplay.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/VisibleItems.h"

#include <QGuiApplication>
#include <QTest>

using namespace lumaphone;
using namespace lumaphone::test;

/// The panel and the window's own dialogs on a real display, where the pointer meets what is on top.
class FloatingCaptionBesideDialogsTest : public QObject
{
    Q_OBJECT

public:
    explicit FloatingCaptionBesideDialogsTest(const PrivateDisplay &display)
        : m_display(display)
    {
    }

private slots:
    void thePointerReachesEveryButton_data()
    {
        QTest::addColumn<QSize>("panel");
        QTest::addColumn<bool>("isHidden");
        QTest::newRow("the panel moves") << QSize(820, 180) << false;
        QTest::newRow("there is no room for it") << QSize(1280, 520) << true;
    }
    void thePointerReachesEveryButton()
    {
        QFETCH(QSize, panel);
        QFETCH(bool, isHidden);
        QTemporaryDir folder;
        Studio studio(folder.path());
        studio.open(QSize(1040, 680));
        studio.floatingCaptions->toggle();
        FloatingCaptionPanel &captions = *studio.floatingCaptions->panel();
        QRect home(QPoint(), panel);
        home.moveCenter(studio.window->geometry().center());
        captions.setFrame(home);
        QVERIFY(waitUntil([&] { return captions.geometry() == home; }));

        const QObject &dialog = studio.object("clearConfirmation");
        QMetaObject::invokeMethod(&studio.object("clearConfirmation"), "open");
        QVERIFY(waitUntil([&] {
            return dialog.property("opened").toBool() && captions.isVisible() != isHidden
                && (isHidden || captions.geometry() != home);
        }));
        drawFrame(*studio.window);
        const QQuickItem *button = studio.find("clearConfirmation.cancel");
        const QPoint target
            = button->mapToGlobal(QPointF(button->width() / 2, button->height() / 2)).toPoint();
        QVERIFY2(home.contains(target), qPrintable(QString("%1, %2").arg(target.x()).arg(target.y())));
        m_display.control({"mousemove", QString::number(target.x()), QString::number(target.y())});
        m_display.control({"click", "1"});
        QVERIFY(waitUntil([&] { return !studio.find("clearConfirmation.cancel"); }));
        QVERIFY(waitUntil([&] { return captions.isVisible() && captions.geometry() == home; }));
        studio.floatingCaptions->close();
        QVERIFY(!studio.session.defaults.string("lumaphone.caption.frame").value_or("").isEmpty());
    }

private:
    const PrivateDisplay &m_display;
};

int main(int argc, char *argv[])
{
    return runOnPrivateDisplay<FloatingCaptionBesideDialogsTest>(argc, argv);
}

#include "FloatingCaptionBesideDialogsTest.moc"
