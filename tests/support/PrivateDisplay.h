#pragma once

#include "support/PrivateRuntimeFolder.h"

#include <QProcess>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace lumaphone::test {

enum class WindowManager {
    none,
    openbox, ///< with its own defaults: four desktops, no compositing
};

/// An X display of the test's own, with nothing on it but a window manager. From its construction to its end
/// DISPLAY (and XDG_RUNTIME_DIR, to a folder of its own) points to it, for this process and those it starts;
/// make it before the application object. Dies with the process, however that ends. Failures throw
/// std::runtime_error.
class PrivateDisplay
{
public:
    explicit PrivateDisplay(QSize size = QSize(1440, 900), WindowManager manager = WindowManager::openbox);
    ~PrivateDisplay();
    PrivateDisplay(const PrivateDisplay &) = delete;
    PrivateDisplay &operator=(const PrivateDisplay &) = delete;

    /// Such as ":7".
    const QString &name() const { return m_name; }
    QSize size() const { return m_size; }
    /// Runs xdotool, the hands of a user on this display, until it has done `arguments`; returns what it
    /// prints.
    QString control(const QStringList &arguments) const;

private:
    void startServer();
    void startWindowManager();
    QByteArray logged(const QString &name) const;

    PrivateRuntimeFolder m_runtimeFolder;
    QTemporaryDir m_folder;
    QSize m_size;
    QString m_name;
    QByteArray m_formerDisplay;
    std::unique_ptr<QProcess> m_server;
    std::unique_ptr<QProcess> m_windowManager;
};

} // namespace lumaphone::test
