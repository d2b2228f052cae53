#include "storage/FloatingCaptionDisplayMode.h"

#include "base/RawValue.h"

namespace lumaphone {

using enum FloatingCaptionDisplayMode;

QString rawValue(FloatingCaptionDisplayMode value)
{
    switch (value) {
    case bilingual:
        return QStringLiteral("bilingual");
    case translationOnly:
        return QStringLiteral("translationOnly");
    case sourceOnly:
        return QStringLiteral("sourceOnly");
    }
    Q_UNREACHABLE();
}

std::optional<FloatingCaptionDisplayMode> floatingCaptionDisplayMode(const QString &raw)
{
    return caseWithRawValue(allFloatingCaptionDisplayModes, raw);
}

QString title(FloatingCaptionDisplayMode value)
{
    switch (value) {
    case bilingual:
        return QStringLiteral("雙語");
    case translationOnly:
        return QStringLiteral("只顯示譯文");
    case sourceOnly:
        return QStringLiteral("只顯示原文");
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
