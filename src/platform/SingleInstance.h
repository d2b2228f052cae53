#pragma once

#include <QString>

#include <functional>

namespace lumaphone {

enum class InstanceRole {
    first, ///< this process is the one
    second, ///< another one runs and has been asked to come to the front
};

/// Lets one process per user run. Main thread, with an event loop in the first instance.
class SingleInstance
{
public:
    virtual ~SingleInstance() = default;
    /// Tries to become the one instance. As long as the object lives and the role is `first`, every further
    /// start calls `onRaiseRequested` on the main thread, with the `permission` of that start: what the
    /// desktop gave it as its right to come to the front, or nothing. What a killed process left behind is no
    /// obstacle. Throws FileError when the place that the instances share cannot be used.
    virtual InstanceRole claim(
        const QString &permission, std::function<void(const QString &permission)> onRaiseRequested)
        = 0;
};

} // namespace lumaphone
