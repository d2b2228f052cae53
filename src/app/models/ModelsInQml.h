#pragma once

#include "models/ModelsModel.h"

#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// Makes the list of models known to the views.
struct ModelsInQml
{
    Q_GADGET
    QML_FOREIGN(lumaphone::ModelsModel)
    QML_NAMED_ELEMENT(ModelsModel)
    QML_UNCREATABLE("The program makes the one model.")
};

} // namespace lumaphone
