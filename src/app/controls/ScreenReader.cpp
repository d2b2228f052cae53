#include "app/controls/ScreenReader.h"

#include <QAccessible>

#include <algorithm>

namespace lumaphone {

void ScreenReader::comeTo(QObject *item)
{
    if (item != nullptr && QAccessible::isActive()) {
        QAccessibleEvent event(item, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

void ScreenReader::keepInOrder(QQuickItem *row)
{
    if (row == nullptr || row->parentItem() == nullptr || !QAccessible::isActive()) {
        return;
    }
    const auto indexOf = [](const QQuickItem *item) {
        return item->property("index");
    };
    QList<QQuickItem *> rows = row->parentItem()->childItems();
    rows.removeIf([&](const QQuickItem *item) { return !indexOf(item).isValid(); });
    const auto isBefore = [&](const QQuickItem *one, const QQuickItem *other) {
        return indexOf(one).toInt() < indexOf(other).toInt();
    };
    if (std::is_sorted(rows.begin(), rows.end(), isBefore)) {
        return;
    }
    std::stable_sort(rows.begin(), rows.end(), isBefore);
    for (qsizetype i = 1; i < rows.size(); ++i) {
        rows[i]->stackAfter(rows[i - 1]);
    }
}

} // namespace lumaphone
