#pragma once

#include "platform/PlatformFolders.h"

namespace lumaphone {

/// The folders of the XDG base directory rules: a variable counts if it holds an absolute path, else the
/// usual place below the user's home is taken.
class XdgFolders final : public PlatformFolders
{
public:
    /// XDG_DATA_HOME or ~/.local/share.
    std::optional<QString> applicationSupport() const override;
    /// XDG_CONFIG_HOME or ~/.config.
    std::optional<QString> configuration() const override;
    /// XDG_CACHE_HOME or ~/.cache.
    std::optional<QString> cache() const override;
    /// XDG_RUNTIME_DIR if it exists: where sockets and locks of the logged-in user belong.
    std::optional<QString> runtime() const;
};

} // namespace lumaphone
