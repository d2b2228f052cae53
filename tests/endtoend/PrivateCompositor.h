#pragma once

#include "support/PrivateDisplay.h"

#include <QList>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <utility>

namespace lumaphone::test {

enum class CompositorKind {
    weston, ///< has no layer shell
    labwc, ///< has one, and windows that overlap
    sway, ///< has one, and windows side by side
};

/// A Wayland desktop of the test's own, whose outputs are windows on a private display: they lie there side
/// by side, so that places on the desktop are places on the display, and whoever moves the display's pointer
/// moves the desktop's. Dies with the process, however that ends. Failures throw std::runtime_error.
class PrivateCompositor
{
public:
    /// Its outputs fill the display, which must be without a window manager.
    PrivateCompositor(const PrivateDisplay &display, CompositorKind kind, int outputs = 1);
    ~PrivateCompositor();
    PrivateCompositor(const PrivateCompositor &) = delete;
    PrivateCompositor &operator=(const PrivateCompositor &) = delete;

    /// The programs that a compositor needs.
    static QStringList programs(CompositorKind kind);

    /// The variables of a program that is to use it, with or without its X server. Nothing says which window
    /// system to take.
    QList<std::pair<QString, QString>> environment(bool withX11) const;
    QRect output(int index) const;
    /// As if its cable were pulled.
    void unplug(int index);

private:
    void startWeston(int outputs);
    void startWlroots(CompositorKind kind, int outputs);
    void arrangeWlrootsOutputs() const;
    void start(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment);
    void awaitOutputs(int outputs);
    void await(const QString &what, const std::function<bool()> &isThere) const;
    QByteArray said() const;
    void write(const QString &name, const QByteArray &content) const;
    QByteArray read(const QString &name) const;

    const PrivateDisplay &m_display;
    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_compositor;
    QString m_socket;
    QString m_x11;
    QList<quint32> m_windows; ///< the outputs', on the display
};

} // namespace lumaphone::test
