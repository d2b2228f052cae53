#pragma once

#include "base/FileLock.h"
#include "platform/SingleInstance.h"

#include <QString>

#include <memory>
#include <optional>

class QLocalServer;

namespace lumaphone {

/// One instance per folder: the first holds a lock there for as long as it lives, which the system releases
/// however it ends, and listens on a socket beside it, over which the others ask it to come to the front.
class LockedSingleInstance final : public SingleInstance
{
public:
    /// `folder` belongs to the user alone; it is created if need be.
    explicit LockedSingleInstance(const QString &folder);
    ~LockedSingleInstance() override;

    InstanceRole claim(
        const QString &permission, std::function<void(const QString &permission)> onRaiseRequested) override;

private:
    void listen(std::function<void(const QString &permission)> onRaiseRequested);
    void askToRaise(const QString &permission) const;

    const QString m_folder;
    std::optional<FileLock> m_lock;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace lumaphone
