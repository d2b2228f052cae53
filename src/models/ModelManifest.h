#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace lumaphone {

/// What a file of a model was when it was installed.
struct RecordedFile
{
    QString name;
    qint64 size = 0;
    QString sha256;

    bool operator==(const RecordedFile &) const = default;
};

/// The record that lies beside the files of an installed model.
struct ModelManifest
{
    QList<RecordedFile> files;
    QDateTime installedAt;
    bool isDamaged = false; ///< a check has found other contents

    bool operator==(const ModelManifest &) const = default;
    const RecordedFile *find(const QString &name) const; ///< null if there is none

    /// None if there is no record, or none that can be read.
    static std::optional<ModelManifest> read(const QString &modelFolder);
    /// Throws FileError.
    void write(const QString &modelFolder) const;
};

} // namespace lumaphone
