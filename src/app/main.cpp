#include "app/MainWindow.h"
#include "app/controls/LanguageFonts.h"
#include "base/CoreDumps.h"
#include "base/LocalizedError.h"
#include "machine/Machine.h"
#include "platform/desktop/LockedSingleInstance.h"
#include "platform/desktop/TerminationSignals.h"
#include "platform/display/LayerShellOffer.h"
#include "platform/display/Renderer.h"
#include "platform/display/WindowSystem.h"

#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QProcessEnvironment>

#include <cstdio>

using namespace lumaphone;

namespace {

void complain(const QString &message)
{
    std::fprintf(stderr, "lumaphone: %s\n", qUtf8Printable(message));
}

/// For the toolkit, which reads it when the application is made.
void choose(const char *variable, const QString &value)
{
    if (!value.isEmpty()) {
        qputenv(variable, value.toUtf8());
    }
}

/// What is true of the toolkit as a whole.
void setUpApplication()
{
    QGuiApplication::setApplicationName(QStringLiteral("lumaphone"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Lumaphone"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.lumaphone.Lumaphone"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("app.lumaphone.Lumaphone"),
        QIcon(QStringLiteral(":/qt/qml/Lumaphone/icons/lumaphone.png"))));
    // The panel may stay open when the window closes; the window says when to end.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QFont font = QGuiApplication::font();
    font.setFamilies({LanguageFonts::familyOf({}), font.family()});
    QGuiApplication::setFont(font);
}

int run()
{
    MainWindow *raised = nullptr;
    Machine machine(SettingsWriting::gathered);
    const auto raise = [&raised](const QString &permission) {
        if (raised) {
            // Wayland's windows come to the front only by the right of what the user has just started.
            if (!permission.isEmpty()) {
                qputenv("XDG_ACTIVATION_TOKEN", permission.toUtf8());
            }
            raised->raise();
        }
    };
    if (machine.instance().claim(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), raise)
        == InstanceRole::second) {
        complain(QStringLiteral("Lumaphone 已經在執行，視窗會移到最前面。"));
        return 0;
    }
    MainWindow window(machine);
    const TerminationSignals termination([&window] { window.close(); });
    raised = &window;
    const int status = window.open() ? QGuiApplication::exec() : 1;
    raised = nullptr;
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    forgoCoreDumps();
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    choose("QT_QPA_PLATFORM", preferredWindowSystem(environment, &isLayerShellOffered));
    choose("QT_QUICK_BACKEND", preferredRenderer(environment, &hasGraphicsCard));
    const QGuiApplication application(argc, argv);
    setUpApplication();
    try {
        return run();
    } catch (const std::exception &error) {
        complain(localizedDescription(error));
        return 1;
    }
}
