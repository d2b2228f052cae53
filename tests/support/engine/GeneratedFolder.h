#pragma once

#include "support/engine/ModelGenerator.h"
#include "translation/engine/SentenceModel.h"

#include <QTemporaryDir>

#include <string>

namespace lumaphone::engine::test {

/// A temporary folder with generated models, vocabularies and shortlists.
class GeneratedFolder
{
public:
    GeneratedFolder();

    /// Writes a file and returns its path.
    QString write(const QString &name, const std::string &bytes) const;
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// A small model with a trained vocabulary that serves both languages.
    ModelFiles smallModel(ModelShape shape = {}) const;

private:
    QTemporaryDir m_folder;
};

/// All bytes of a file.
std::string contentOf(const QString &path);

} // namespace lumaphone::engine::test
