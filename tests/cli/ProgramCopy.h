#pragma once

#include <QString>
#include <QTemporaryDir>

namespace lumaphone::test {

/// The program as it is installed where there is neither a runtime library for speech networks nor a network:
/// links to its executables in a place of their own.
class ProgramCopy
{
public:
    /// `program` lies in the build tree's folder of programs.
    explicit ProgramCopy(const QString &program);

    QString program() const { return m_folder.filePath(QStringLiteral("bin/") + m_name); }

private:
    QTemporaryDir m_folder;
    QString m_name;
};

} // namespace lumaphone::test
