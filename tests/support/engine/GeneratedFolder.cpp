#include "support/engine/GeneratedFolder.h"

#include "support/engine/VocabularyTrainer.h"

#include <QFile>

#include <stdexcept>

namespace lumaphone::engine::test {

GeneratedFolder::GeneratedFolder()
{
    if (!m_folder.isValid())
        throw std::runtime_error("no temporary folder");
}

QString GeneratedFolder::write(const QString &name, const std::string &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly)
        || file.write(bytes.data(), qint64(bytes.size())) != qint64(bytes.size()))
        throw std::runtime_error(file.errorString().toStdString());
    return file.fileName();
}

ModelFiles GeneratedFolder::smallModel(ModelShape shape) const
{
    ModelFiles files;
    files.model = write(QStringLiteral("model.bin"), generateModel(shape));
    files.sourceVocabulary
        = write(QStringLiteral("vocabulary.spm"), paddedVocabulary(trainVocabulary(900), shape.targetWords));
    return files;
}

std::string contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    return file.readAll().toStdString();
}

} // namespace lumaphone::engine::test
