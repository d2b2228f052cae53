#include "cli/ProgramCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lumaphone::test {

namespace {

void copy(const QString &from, const QString &to)
{
    if (!QFile::copy(from, to)) {
        qFatal("%s cannot be copied to %s", qPrintable(from), qPrintable(to));
    }
}

} // namespace

ProgramCopy::ProgramCopy(const QString &program)
    : m_name(QFileInfo(program).fileName())
{
    const QDir folder(m_folder.path());
    const QString resources = QStringLiteral("libexec/lumaphone");
    folder.mkpath(QStringLiteral("bin"));
    folder.mkpath(resources);
    copy(program, this->program());
    for (const char *const helper : {"lumaphone-core-cli", "lumaphone-speech-host"}) {
        const QFileInfo built(QFileInfo(program).dir().filePath(QLatin1String(helper)));
        if (built.exists()) {
            copy(built.filePath(), folder.filePath(resources + QLatin1Char('/') + QLatin1String(helper)));
        }
    }
}

} // namespace lumaphone::test
