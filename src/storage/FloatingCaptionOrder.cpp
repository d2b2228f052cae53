#include "storage/FloatingCaptionOrder.h"

#include "base/RawValue.h"

namespace lumaphone {

using enum FloatingCaptionOrder;

QString rawValue(FloatingCaptionOrder value)
{
    switch (value) {
    case sourceFirst:
        return QStringLiteral("sourceFirst");
    case translationFirst:
        return QStringLiteral("translationFirst");
    }
    Q_UNREACHABLE();
}

std::optional<FloatingCaptionOrder> floatingCaptionOrder(const QString &raw)
{
    return caseWithRawValue(allFloatingCaptionOrders, raw);
}

QString title(FloatingCaptionOrder value)
{
    switch (value) {
    case sourceFirst:
        return QStringLiteral("原文在上");
    case translationFirst:
        return QStringLiteral("譯文在上");
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
