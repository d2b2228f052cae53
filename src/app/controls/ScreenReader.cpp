#include "app/controls/ScreenReader.h"

#include <QAccessible>

namespace lumaphone {

void ScreenReader::comeTo(QObject *item)
{
    if (item != nullptr && QAccessible::isActive()) {
        QAccessibleEvent event(item, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace lumaphone
