#pragma once

#include "platform/BundleResources.h"

#include <QFileInfo>

#include <utility>

namespace lumaphone::test {

/// A program that was shipped with what lies in a folder.
class FolderResources final : public BundleResources
{
public:
    explicit FolderResources(QString folder)
        : m_folder(std::move(folder))
    {
    }
    std::optional<QString> path(const QString &name) const override
    {
        const QString path = m_folder + QLatin1Char('/') + name;
        return QFileInfo::exists(path) ? std::optional(path) : std::nullopt;
    }

private:
    QString m_folder;
};

} // namespace lumaphone::test
