#pragma once

#include "base/FileLock.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QLocalServer;

namespace lumaphone {

enum class InstanceRole {
    first, ///< this process is the one
    second, ///< another one runs and has been asked to come to the front
};

/// One instance per folder: the first holds a lock there for as long as it lives, which the system releases
/// however it ends, and listens on a socket beside it, over which the others ask it to come to the front.
/// Main thread, with an event loop in the first instance.
class LockedSingleInstance final
{
public:
    /// `folder` belongs to the user alone; it is created if need be.
    explicit LockedSingleInstance(const QString &folder);
    ~LockedSingleInstance();

    /// Tries to become the one instance. As long as the object lives and the role is `first`, every further
    /// start calls `onRaiseRequested` with the `permission` of that start: what the desktop gave it as its
    /// right to come to the front, or nothing. What a killed process left behind is no obstacle. Throws
    /// FileError when the folder cannot be used.
    InstanceRole claim(
        const QString &permission, std::function<void(const QString &permission)> onRaiseRequested);

private:
    void listen(std::function<void(const QString &permission)> onRaiseRequested);
    void askToRaise(const QString &permission) const;

    const QString m_folder;
    std::optional<FileLock> m_lock;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace lumaphone
