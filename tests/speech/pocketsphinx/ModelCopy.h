#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

namespace lumaphone::test {

/// A folder with the files of the system's speech model of English, to be damaged.
class ModelCopy
{
public:
    ModelCopy();

    /// Relative to the folder.
    static QStringList files();

    QString path() const { return m_folder.path(); }
    qint64 size(const QString &file) const;
    void remove(const QString &file) const;
    void truncate(const QString &file, qint64 size) const;
    void overwrite(const QString &file, qint64 position, const QByteArray &bytes) const;

private:
    QString pathOf(const QString &file) const { return path() + QLatin1Char('/') + file; }
    /// Replaces the link to the system's file by a copy.
    void detach(const QString &file) const;

    QTemporaryDir m_folder;
};

} // namespace lumaphone::test
