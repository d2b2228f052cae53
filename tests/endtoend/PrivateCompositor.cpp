#include "endtoend/PrivateCompositor.h"

#include "support/OwnedProcess.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>

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

// Windows open on the first output.
const char swaySettings[] = R"(default_border none
focus_follows_mouse no
workspace 1 output X11-1
assign [app_id=".*"] workspace number 1
exec sh %FOLDER%/started
)";

// Where they listen, and one colour.
const char started[] = R"(echo "$WAYLAND_DISPLAY $DISPLAY" > %FOLDER%/names
exec swaybg -c '#305070'
)";

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

Connection connectionTo(const PrivateDisplay &display)
{
    return {xcb_connect(qPrintable(display.name()), nullptr), &xcb_disconnect};
}

template<typename Reply> std::unique_ptr<Reply, decltype(&std::free)> answer(Reply *reply)
{
    return {reply, &std::free};
}

xcb_atom_t atom(xcb_connection_t &display, const QByteArray &name)
{
    const auto reply = answer(xcb_intern_atom_reply(&display,
        xcb_intern_atom(&display, 0, static_cast<uint16_t>(name.size()), name.constData()), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

/// Compositors that nobody has told of these before overlook that a window of theirs is closed.
void makeClosingKnown(const PrivateDisplay &display)
{
    const Connection connection = connectionTo(display);
    atom(*connection, "WM_PROTOCOLS");
    atom(*connection, "WM_DELETE_WINDOW");
}

/// Those on the display that can be seen, oldest first. Clients have tiny ones for other purposes.
QList<quint32> visibleWindows(const PrivateDisplay &display)
{
    constexpr int smallest = 100;
    const Connection connection = connectionTo(display);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    const auto tree
        = answer(xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), root), nullptr));
    QList<quint32> windows;
    for (int index = 0; tree && index < xcb_query_tree_children_length(tree.get()); ++index) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[index];
        const auto state = answer(xcb_get_window_attributes_reply(
            connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
        const auto size = answer(
            xcb_get_geometry_reply(connection.get(), xcb_get_geometry(connection.get(), window), nullptr));
        if (state && state->map_state == XCB_MAP_STATE_VIEWABLE && size && size->width >= smallest) {
            windows.append(window);
        }
    }
    std::sort(windows.begin(), windows.end());
    return windows;
}

/// Sends what a window manager sends when a window is closed.
void closeWindow(const PrivateDisplay &on, quint32 window)
{
    const Connection display = connectionTo(on);
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(*display, "WM_PROTOCOLS");
    message.data.data32[0] = atom(*display, "WM_DELETE_WINDOW");
    xcb_send_event(
        display.get(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
    // The server has read it before the connection ends.
    answer(xcb_get_input_focus_reply(display.get(), xcb_get_input_focus(display.get()), nullptr));
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
    makeClosingKnown(display);
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
    awaitOutputs(outputs);
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
    awaitOutputs(outputs);
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
void PrivateCompositor::awaitOutputs(int outputs)
{
    await(QStringLiteral("its outputs"), [&] {
        m_windows = visibleWindows(m_display);
        return m_windows.size() == outputs;
    });
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
    // Asked once, a compositor that is busy with its clients may overlook it.
    await(QStringLiteral("rid of its output"), [&] {
        closeWindow(m_display, m_windows[index]);
        return !visibleWindows(m_display).contains(m_windows[index]);
    });
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
