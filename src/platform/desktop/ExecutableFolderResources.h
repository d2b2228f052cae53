#pragma once

#include "platform/BundleResources.h"

namespace lumaphone {

/// The resources' place: the folder of the running executable in a build tree, <prefix>/libexec/lumaphone
/// for a program installed in <prefix>/bin.
class ExecutableFolderResources final : public BundleResources
{
public:
    std::optional<QString> path(const QString &name) const override;
};

} // namespace lumaphone
