#pragma once

#include <QTemporaryDir>

namespace lumaphone::test {

/// The folder that a login gives to programs with windows, of the test's own. Make it before the application
/// object.
class PrivateRuntimeFolder
{
public:
    PrivateRuntimeFolder() { qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8()); }
    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

} // namespace lumaphone::test
