#pragma once

#include <QString>
#include <QStringList>

namespace lumaphone {

/// The files of one PocketSphinx model: <folder>/en-us (acoustic model), <folder>/en-us.lm.bin and
/// <folder>/cmudict-en-us.dict.
class PocketSphinxModel
{
public:
    explicit PocketSphinxModel(QString folder);

    const QString &folder() const { return m_folder; }
    QString acousticModel() const;
    QString languageModel() const;
    QString dictionary() const;

    /// Whether every file is there.
    bool isInstalled() const;
    /// Finds the damage that the decoder would not notice, or would die of: cut-off text files, and binary
    /// files that point beyond their end. Throws SpeechFrameworkError, which names the file.
    void validate() const;

private:
    QStringList files() const;

    QString m_folder;
};

} // namespace lumaphone
