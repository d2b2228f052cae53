#include "storage/FloatingCaptionTheme.h"

#include "base/RawValue.h"

namespace lumaphone {

using enum FloatingCaptionTheme;

QString rawValue(FloatingCaptionTheme value)
{
    switch (value) {
    case dark:
        return QStringLiteral("dark");
    case light:
        return QStringLiteral("light");
    case glass:
        return QStringLiteral("glass");
    }
    Q_UNREACHABLE();
}

std::optional<FloatingCaptionTheme> floatingCaptionTheme(const QString &raw)
{
    return caseWithRawValue(allFloatingCaptionThemes, raw);
}

QString title(FloatingCaptionTheme value)
{
    switch (value) {
    case dark:
        return QStringLiteral("深色");
    case light:
        return QStringLiteral("淺色");
    case glass:
        return QStringLiteral("玻璃");
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
