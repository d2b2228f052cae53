#include "speech/pocketsphinx/ModelCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lumaphone::test {

namespace {

const auto systemsModel = QStringLiteral("/usr/share/pocketsphinx/model/en-us/");

void require(bool succeeded, const QString &path)
{
    if (!succeeded) {
        qFatal("%s cannot be prepared for the test", qPrintable(path));
    }
}

} // namespace

ModelCopy::ModelCopy()
{
    require(QDir(path()).mkdir(QStringLiteral("en-us")), path());
    for (const QString &file : files()) {
        require(QFile::link(systemsModel + file, pathOf(file)), file);
    }
}

QStringList ModelCopy::files()
{
    return {QStringLiteral("en-us.lm.bin"), QStringLiteral("cmudict-en-us.dict"),
        QStringLiteral("en-us/feat.params"), QStringLiteral("en-us/mdef"), QStringLiteral("en-us/means"),
        QStringLiteral("en-us/noisedict"), QStringLiteral("en-us/sendump"),
        QStringLiteral("en-us/transition_matrices"), QStringLiteral("en-us/variances")};
}

qint64 ModelCopy::size(const QString &file) const
{
    return QFileInfo(pathOf(file)).size();
}

void ModelCopy::remove(const QString &file) const
{
    require(QFile::remove(pathOf(file)), file);
}

void ModelCopy::truncate(const QString &file, qint64 size) const
{
    detach(file);
    require(QFile::resize(pathOf(file), size), file);
}

void ModelCopy::overwrite(const QString &file, qint64 position, const QByteArray &bytes) const
{
    detach(file);
    QFile copy(pathOf(file));
    require(
        copy.open(QIODevice::ReadWrite) && copy.seek(position) && copy.write(bytes) == bytes.size(), file);
}

void ModelCopy::detach(const QString &file) const
{
    if (QFileInfo(pathOf(file)).isSymLink()) {
        remove(file);
        require(QFile::copy(systemsModel + file, pathOf(file)), file);
        require(QFile::setPermissions(pathOf(file), QFile::ReadOwner | QFile::WriteOwner), file);
    }
}

} // namespace lumaphone::test
