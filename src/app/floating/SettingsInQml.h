#pragma once

#include "storage/LumaphoneSettings.h"

#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// Makes the settings known to the views.
struct SettingsInQml
{
    Q_GADGET
    QML_FOREIGN(lumaphone::LumaphoneSettings)
    QML_NAMED_ELEMENT(LumaphoneSettings)
    QML_UNCREATABLE("The program makes the one object.")
};

} // namespace lumaphone
