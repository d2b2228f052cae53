#include "app/floating/FloatingCaptionStyle.h"

#include <algorithm>

namespace lumaphone {

namespace {

QColor faded(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * std::clamp(opacity, 0.0, 1.0)));
    return color;
}

bool hasSource(FloatingCaptionDisplayMode mode)
{
    switch (mode) {
    case FloatingCaptionDisplayMode::bilingual:
    case FloatingCaptionDisplayMode::sourceOnly:
        return true;
    case FloatingCaptionDisplayMode::translationOnly:
        return false;
    }
    Q_UNREACHABLE();
}

bool hasTranslation(FloatingCaptionDisplayMode mode)
{
    switch (mode) {
    case FloatingCaptionDisplayMode::bilingual:
    case FloatingCaptionDisplayMode::translationOnly:
        return true;
    case FloatingCaptionDisplayMode::sourceOnly:
        return false;
    }
    Q_UNREACHABLE();
}

struct ThemeColors
{
    QColor source;
    QColor translation;
    QColor background;
    QColor border;
};

ThemeColors colorsOf(FloatingCaptionTheme theme, const DesktopColors &desktop)
{
    switch (theme) {
    case FloatingCaptionTheme::dark:
        return {faded(Qt::white, 0.72), Qt::white, Qt::black, faded(Qt::white, 0.16)};
    case FloatingCaptionTheme::light:
        return {faded(Qt::black, 0.62), Qt::black, Qt::white, faded(Qt::black, 0.14)};
    case FloatingCaptionTheme::glass:
        return {desktop.secondaryLabel, desktop.label, desktop.windowBackground, faded(desktop.accent, 0.22)};
    }
    Q_UNREACHABLE();
}

} // namespace

FloatingCaptionStyle::FloatingCaptionStyle(
    const FloatingCaptionContent &content, const DesktopColors &desktop)
    : showsSourceText(hasSource(content.displayMode) && !content.sourceText.isEmpty())
    , wantsSourceText(hasSource(content.displayMode))
    , showsTranslationText(hasTranslation(content.displayMode))
    , sourceLine(content.sourceText)
    , translationLine(content.translationText.isEmpty() ? QStringLiteral(" ") : content.translationText)
    , isTranslationFirst(content.order == FloatingCaptionOrder::translationFirst)
    , fontFamily(content.fontFamily)
    , lineSpacing(std::clamp(content.lineSpacing, 0.8, 3.0))
    , lineWidth(std::clamp(content.lineWidth, 0.2, 1.0))
    , sourceFontSize(std::max(content.fontSize * 0.58, 14.0))
    , translationFontSize(content.fontSize)
    , minimumSourceFontSize(sourceFontSize * 0.66)
    , minimumTranslationFontSize(translationFontSize * 0.58)
    , shadowColor(faded(Qt::black, 0.9))
{
    const ThemeColors colors = colorsOf(content.theme, desktop);
    sourceColor = colors.source;
    translationColor = colors.translation;
    backgroundColor = faded(colors.background, content.opacity);
    borderColor = colors.border;
    buttonColor = faded(colors.background, 0.7);
}

} // namespace lumaphone
