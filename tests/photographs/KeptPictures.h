#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace lumaphone::test {

/// The pictures that a change is noticed by: a folder with small pictures of photographs, and chosen.txt,
/// which has for each a line with its subject and its name.
class KeptPictures
{
public:
    /// Throws std::runtime_error if there is no such list.
    explicit KeptPictures(const QString &folder);

    /// The names of pictures, without their suffix.
    QStringList names() const { return m_subjects.keys(); }
    bool hasSubject(const QString &subject) const { return m_subjects.values().contains(subject); }
    /// What has changed in the photographs of a folder, a line each. Beside a photograph that has changed a
    /// picture is written that shows where.
    QStringList changes(const QString &photographs) const;
    /// Keeps the photographs of a folder from now on, and no others.
    void renew(const QString &photographs) const;

private:
    QString pathOf(const QString &name) const;

    QString m_folder;
    QMap<QString, QString> m_subjects; ///< of pictures, by name
};

} // namespace lumaphone::test
