#pragma once

#include "base/LocalizedError.h"

#include <QCoroTask>
#include <QString>

namespace lumaphone {

/// Nothing could show the file, or it is gone.
class FileViewerError : public PlatformError
{
public:
    using PlatformError::PlatformError;
};

/// The desktop's file manager. Main thread.
class FileViewer
{
public:
    virtual ~FileViewer() = default;
    /// Shows a file or folder, selected among its neighbours where the desktop can do that, or its folder if
    /// it is not there, and returns when the desktop has taken the request. It cannot be taken back. Throws
    /// FileViewerError.
    virtual QCoro::Task<> reveal(QString path) = 0;
};

} // namespace lumaphone
