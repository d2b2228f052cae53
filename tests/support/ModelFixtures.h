#pragma once

#include "models/ModelCatalogue.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <utility>

namespace lumaphone::test {

QByteArray gzipped(const QByteArray &bytes);

/// A ".tar.bz2" with these members, in this order. A member whose content begins with "->" is a symbolic
/// link.
QByteArray tarBz2(const QList<std::pair<QString, QByteArray>> &members);

QString sha256Of(const QByteArray &bytes);

/// A file as a catalogue lists it, with its size and hash: an object in JSON.
QString listedFile(const QString &role, const QString &name, const QByteArray &bytes);

/// A whole catalogue in JSON.
QByteArray listingOf(const QList<ModelEntry> &entries);

/// Bytes that no compression makes smaller; the same for the same seed.
QByteArray noise(qsizetype size, unsigned seed);

} // namespace lumaphone::test
