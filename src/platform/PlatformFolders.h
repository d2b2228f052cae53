#pragma once

#include <QString>

#include <optional>

namespace lumaphone {

/// Where the user's files belong. The folders need not exist yet. Any thread; throws nothing.
class PlatformFolders
{
public:
    virtual ~PlatformFolders() = default;
    /// The parent of the application's data; none when the user has no home.
    virtual std::optional<QString> applicationSupport() const = 0;
    /// The parent of the application's settings; none when the user has no home.
    virtual std::optional<QString> configuration() const = 0;
    /// The parent of what the application can make again; none when the user has no home.
    virtual std::optional<QString> cache() const = 0;
};

} // namespace lumaphone
