#pragma once

#include <QString>

#include <optional>

namespace lumaphone {

/// The files shipped beside the program. There is one place and no search path. Any thread; throws nothing.
class BundleResources
{
public:
    virtual ~BundleResources() = default;
    /// Absolute path of a resource, or none if the program was shipped without it.
    virtual std::optional<QString> path(const QString &name) const = 0;
};

} // namespace lumaphone
