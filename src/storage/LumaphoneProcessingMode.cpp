#include "storage/LumaphoneProcessingMode.h"

#include "base/RawValue.h"

namespace lumaphone {

using enum LumaphoneProcessingMode;

QString rawValue(LumaphoneProcessingMode value)
{
    switch (value) {
    case appleMode:
        return QStringLiteral("appleMode");
    case customAPI:
        return QStringLiteral("customAPI");
    }
    Q_UNREACHABLE();
}

std::optional<LumaphoneProcessingMode> lumaphoneProcessingMode(const QString &raw)
{
    return caseWithRawValue(allLumaphoneProcessingModes, raw);
}

QString title(LumaphoneProcessingMode value)
{
    switch (value) {
    case appleMode:
        return QStringLiteral("Apple Mode");
    case customAPI:
        return QStringLiteral("自定義 API");
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
