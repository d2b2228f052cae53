#pragma once

#include "platform/FileViewer.h"

#include <QStringList>

#include <optional>

namespace lumaphone::test {

/// Notes what it is asked to show.
class NotingFileViewer final : public FileViewer
{
public:
    QCoro::Task<> reveal(QString path) override
    {
        revealed.append(path);
        if (failure) {
            throw FileViewerError(*failure);
        }
        co_return;
    }

    QStringList revealed;
    std::optional<QString> failure; ///< the text of the error to throw, while it is set
};

} // namespace lumaphone::test
