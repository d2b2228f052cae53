#pragma once

#include "platform/FileViewer.h"

namespace lumaphone {

/// Asks the file manager on the session bus; where there is none that understands, the folder is opened with
/// whatever the desktop opens folders with.
class DesktopFileViewer final : public FileViewer
{
public:
    /// `opener` is the program that opens a path given as its argument.
    explicit DesktopFileViewer(QString opener = QStringLiteral("xdg-open"));

    QCoro::Task<> reveal(QString path) override;

private:
    const QString m_opener;
};

} // namespace lumaphone
