#pragma once

#include "models/ModelStore.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace lumaphone {

/// One thing that the user may want, such as translation from Japanese, and the models that it takes. They
/// are the catalogue's, which outlives it.
struct ModelGroup
{
    ModelKind kind;
    QString title;
    QStringList languages; ///< that it recognizes or translates from
    QList<const ModelEntry *> entries; ///< what it is about comes first

    /// Whether it comes with the program.
    bool isBundled() const { return entries.constFirst()->isBundled; }
};

/// Everything that a catalogue has to offer, in its order.
QList<ModelGroup> modelGroups(const ModelCatalogue &catalogue);

/// The models of a group that have to be in place: all but a voice detector in whose place another one is.
QList<const ModelEntry *> neededModels(const ModelGroup &group, const ModelStore &store);

/// What a group lacks most: `installed` if everything needed is in place.
ModelState groupState(const ModelGroup &group, const ModelStore &store);

} // namespace lumaphone
