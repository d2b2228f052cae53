#include "support/PrivateCompositor.h"

#include "support/OwnedProcess.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace lumaphone::test {

namespace {

// No panel, one colour, no lock.
const char westonSettings[] = R"([core]
idle-time=0
xwayland=true
[shell]
panel-position=none
background-color=0xff305070
locking=false
)";

const char swaySettings[] = R"(default_border none
focus_follows_mouse no
exec sh %FOLDER%/started
)";

// Where they listen, and one colour.
const char started[] = R"(echo "$WAYLAND_DISPLAY $DISPLAY" > %FOLDER%/names
exec swaybg -c '#305070'
)";

xcb_atom_t atom(xcb_connection_t &display, const QByteArray &name)
{
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(&display,
            xcb_intern_atom(&display, 0, static_cast<uint16_t>(name.size()), name.constData()), nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QString nameOf(CompositorKind kind)
{
    switch (kind) {
    case CompositorKind::weston:
        return QStringLiteral("weston");
    case CompositorKind::labwc:
        return QStringLiteral("labwc");
    case CompositorKind::sway:
        return QStringLiteral("sway");
    }
    return {};
}

} // namespace

PrivateCompositor::PrivateCompositor(const PrivateDisplay &display, CompositorKind kind, int outputs)
    : m_display(display)
{
    if (kind == CompositorKind::weston) {
        startWeston(outputs);
    } else {
        startWlroots(kind, outputs);
    }
}

PrivateCompositor::~PrivateCompositor()
{
    if (m_compositor->state() != QProcess::NotRunning) {
        // It takes its X server along.
        m_compositor->terminate();
        m_compositor->waitForFinished(processLimitMs);
    }
    endProcess(*m_compositor);
}

QStringList PrivateCompositor::programs(CompositorKind kind)
{
    QStringList needed {nameOf(kind), QStringLiteral("Xwayland")};
    if (kind != CompositorKind::weston) {
        needed << QStringLiteral("swaybg") << QStringLiteral("wlr-randr");
    }
    return needed;
}

void PrivateCompositor::startWeston(int outputs)
{
    write(QStringLiteral("weston.ini"), westonSettings);
    m_socket = QStringLiteral("weston");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
    start(nameOf(CompositorKind::weston),
        {QStringLiteral("--config=") + m_folder.filePath(QStringLiteral("weston.ini")),
            QStringLiteral("--backend=x11-backend.so"), QStringLiteral("--use-pixman"),
            QStringLiteral("--width=%1").arg(m_display.size().width() / outputs),
            QStringLiteral("--height=%1").arg(m_display.size().height()),
            QStringLiteral("--output-count=%1").arg(outputs), QStringLiteral("--socket=") + m_socket},
        environment);
    const QRegularExpression listening(QStringLiteral("xserver listening on display (:\\d+)"));
    await(QStringLiteral("an X server"), [&] {
        m_x11 = listening.match(QString::fromUtf8(said())).captured(1);
        return !m_x11.isEmpty();
    });
    awaitOutputs(QStringLiteral("Weston Compositor"), outputs);
}

void PrivateCompositor::startWlroots(CompositorKind kind, int outputs)
{
    write(QStringLiteral("started"), QByteArray(started).replace("%FOLDER%", m_folder.path().toUtf8()));
    write(
        QStringLiteral("sway.conf"), QByteArray(swaySettings).replace("%FOLDER%", m_folder.path().toUtf8()));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "HOME"}) {
        environment.insert(QString::fromLatin1(name), m_folder.path());
    }
    environment.insert(QStringLiteral("WLR_BACKENDS"), QStringLiteral("x11"));
    environment.insert(QStringLiteral("WLR_X11_OUTPUTS"), QString::number(outputs));
    environment.insert(QStringLiteral("WLR_RENDERER"), QStringLiteral("pixman"));
    if (kind == CompositorKind::labwc) {
        start(nameOf(kind),
            {QStringLiteral("-s"), QStringLiteral("sh ") + m_folder.filePath(QStringLiteral("started"))},
            environment);
    } else {
        start(nameOf(kind), {QStringLiteral("-c"), m_folder.filePath(QStringLiteral("sway.conf"))},
            environment);
    }
    await(QStringLiteral("its names"), [&] { return read(QStringLiteral("names")).endsWith('\n'); });
    const QList<QByteArray> names = read(QStringLiteral("names")).trimmed().split(' ');
    m_socket = QString::fromUtf8(names.front());
    m_x11 = QString::fromUtf8(names.back());
    awaitOutputs(QStringLiteral("wlroots"), outputs);
    arrangeWlrootsOutputs();
}

/// Its windows have a size of their own, and its outputs the size of the windows only when they are told.
void PrivateCompositor::arrangeWlrootsOutputs() const
{
    QStringList arguments;
    for (int index = 0; index < m_windows.size(); ++index) {
        const QRect place = output(index);
        arguments << QStringLiteral("--output") << QStringLiteral("X11-%1").arg(index + 1)
                  << QStringLiteral("--custom-mode")
                  << QStringLiteral("%1x%2").arg(place.width()).arg(place.height()) << QStringLiteral("--pos")
                  << QStringLiteral("%1,0").arg(place.x());
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : this->environment(false)) {
        environment.insert(name, value);
    }
    try {
        outputOf(QStringLiteral("wlr-randr"), arguments, environment);
    } catch (const std::runtime_error &) {
        endProcess(*m_compositor);
        throw;
    }
}

void PrivateCompositor::start(
    const QString &program, const QStringList &arguments, const QProcessEnvironment &environment)
{
    m_compositor = makeOwnedProcess();
    QProcessEnvironment variables = environment;
    variables.remove(QStringLiteral("WAYLAND_DISPLAY"));
    m_compositor->setProcessEnvironment(variables);
    m_compositor->setProcessChannelMode(QProcess::MergedChannels);
    m_compositor->setStandardOutputFile(m_folder.filePath(QStringLiteral("log")));
    m_compositor->start(program, arguments);
}

/// Puts the windows that are its outputs side by side.
void PrivateCompositor::awaitOutputs(const QString &title, int outputs)
{
    await(QStringLiteral("its outputs"), [&] {
        m_windows.clear();
        // It fails as long as there is none.
        try {
            const QStringList rows = m_display
                                         .control({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                             QStringLiteral("--name"), title})
                                         .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            for (const QString &row : rows) {
                m_windows.append(row.toUInt());
            }
        } catch (const std::runtime_error &) {
            return false;
        }
        return m_windows.size() == outputs;
    });
    std::sort(m_windows.begin(), m_windows.end());
    for (int index = 0; index < outputs; ++index) {
        const QRect place = output(index);
        const QString window = QString::number(m_windows[index]);
        m_display.control({QStringLiteral("windowmove"), window, QString::number(place.x()),
            QString::number(place.y()), QStringLiteral("windowsize"), window, QString::number(place.width()),
            QString::number(place.height())});
    }
}

void PrivateCompositor::await(const QString &what, const std::function<bool()> &isThere) const
{
    awaitProcess(*m_compositor, QStringLiteral("The private compositor has not got ") + what, isThere,
        [this] { return said(); });
}

QList<std::pair<QString, QString>> PrivateCompositor::environment(bool withX11) const
{
    return {{QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path()},
        {QStringLiteral("WAYLAND_DISPLAY"), m_socket},
        {QStringLiteral("DISPLAY"), withX11 ? m_x11 : QString()},
        {QStringLiteral("QT_QPA_PLATFORM"), QString()},
        // The toolkit warns of everything that a compositor cannot do.
        {QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.qpa.wayland*.warning=false")}};
}

QRect PrivateCompositor::output(int index) const
{
    const int width = m_display.size().width() / static_cast<int>(m_windows.size());
    return {index * width, 0, width, m_display.size().height()};
}

void PrivateCompositor::unplug(int index)
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display(
        xcb_connect(qPrintable(m_display.name()), nullptr), &xcb_disconnect);
    // What a window manager sends when a window is closed.
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_windows[index];
    message.type = atom(*display, "WM_PROTOCOLS");
    message.data.data32[0] = atom(*display, "WM_DELETE_WINDOW");
    xcb_send_event(display.get(), 0, m_windows[index], XCB_EVENT_MASK_NO_EVENT,
        reinterpret_cast<const char *>(&message));
    xcb_flush(display.get());
}

QByteArray PrivateCompositor::said() const
{
    return read(QStringLiteral("log"));
}

void PrivateCompositor::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        failProcess(file.fileName(), file.errorString().toUtf8());
    }
}

QByteArray PrivateCompositor::read(const QString &name) const
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace lumaphone::test
