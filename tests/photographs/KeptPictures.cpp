#include "photographs/KeptPictures.h"

#include "photographs/PictureComparison.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace lumaphone::test {

namespace {

QImage photographOf(const QString &folder, const QString &name)
{
    const QImage photograph(QStringLiteral("%1/%2.png").arg(folder, name));
    if (photograph.isNull()) {
        throw std::runtime_error("Nothing photographs " + name.toStdString() + ", which chosen.txt names.");
    }
    return photograph;
}

/// What is to be said of a photograph; nothing if it is as it was.
QString changeOf(const QString &folder, const QString &name, const QImage &kept)
{
    const QImage photograph = photographOf(folder, name);
    if (kept.isNull()) {
        return QStringLiteral("%1: there is no picture of it yet").arg(name);
    }
    const PictureDifference difference = differenceOf(kept, photograph);
    if (difference.isNone()) {
        return {};
    }
    const QString shown = QStringLiteral("%1/%2-changed.png").arg(folder, name);
    if (!framed(photograph, difference).save(shown)) {
        throw std::runtime_error("A picture could not be written: " + shown.toStdString());
    }
    QRect all;
    for (const QRect &place : difference.places) {
        all = all.united(place);
    }
    return QStringLiteral(
        "%1: %2 blocks have changed, by up to %3 of 255, in the %4 x %5 pixels from (%6, %7) on; see %8")
        .arg(name)
        .arg(difference.places.size())
        .arg(difference.greatest, 0, 'f', 1)
        .arg(all.width())
        .arg(all.height())
        .arg(all.x())
        .arg(all.y())
        .arg(shown);
}

} // namespace

KeptPictures::KeptPictures(const QString &folder)
    : m_folder(folder)
{
    QFile list(folder + QStringLiteral("/chosen.txt"));
    if (!list.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("There is no " + list.fileName().toStdString());
    }
    for (const QString &line : QString::fromUtf8(list.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList words = line.split(u' ');
        if (words.size() != 2) {
            throw std::runtime_error("Not a subject and a name: " + line.toStdString());
        }
        m_subjects.insert(words[1], words[0]);
    }
}

QStringList KeptPictures::changes(const QString &photographs) const
{
    QStringList all;
    for (const QString &name : names()) {
        const QString change = changeOf(photographs, name, QImage(pathOf(name)));
        if (!change.isEmpty()) {
            all.append(change);
        }
    }
    return all;
}

void KeptPictures::renew(const QString &photographs) const
{
    QDir folder(m_folder);
    for (const QString &file : folder.entryList({QStringLiteral("*.png")})) {
        folder.remove(file);
    }
    for (const QString &name : names()) {
        if (!keptPicture(photographOf(photographs, name)).save(pathOf(name), "PNG", 0)) {
            throw std::runtime_error("A picture could not be written: " + pathOf(name).toStdString());
        }
    }
}

QString KeptPictures::pathOf(const QString &name) const
{
    return QStringLiteral("%1/%2.png").arg(m_folder, name);
}

} // namespace lumaphone::test
