#pragma once

#include "storage/FloatingCaptionDisplayMode.h"
#include "storage/FloatingCaptionOrder.h"
#include "storage/FloatingCaptionTheme.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// The user's choices and texts that decide how the caption panel is drawn.
struct FloatingCaptionContent
{
    FloatingCaptionTheme theme = FloatingCaptionTheme::dark;
    FloatingCaptionDisplayMode displayMode = FloatingCaptionDisplayMode::bilingual;
    FloatingCaptionOrder order = FloatingCaptionOrder::sourceFirst;
    double fontSize = 34; ///< of the translation, in points
    QString fontFamily; ///< empty for that of the text's language
    double lineSpacing = 1; ///< in heights of the font's lines
    double lineWidth = 1; ///< of the width between the paddings
    double opacity = 0.3; ///< of the background, 0...1
    QString sourceText;
    QString translationText;
};

/// What the glass theme borrows from the desktop.
struct DesktopColors
{
    QColor label;
    QColor secondaryLabel;
    QColor windowBackground;
    QColor accent;

    bool operator==(const DesktopColors &) const = default;
};

/// How the caption panel draws its two lines: every rule of its look, as values for the view.
/// Lengths are in points, which are the toolkit's device-independent pixels.
class FloatingCaptionStyle
{
    Q_GADGET
    QML_VALUE_TYPE(floatingCaptionStyle)
    Q_PROPERTY(bool showsSourceText MEMBER showsSourceText)
    Q_PROPERTY(bool wantsSourceText MEMBER wantsSourceText)
    Q_PROPERTY(bool showsTranslationText MEMBER showsTranslationText)
    Q_PROPERTY(QString sourceLine MEMBER sourceLine)
    Q_PROPERTY(QString translationLine MEMBER translationLine)
    Q_PROPERTY(bool isTranslationFirst MEMBER isTranslationFirst)
    Q_PROPERTY(QString fontFamily MEMBER fontFamily)
    Q_PROPERTY(double lineSpacing MEMBER lineSpacing)
    Q_PROPERTY(double lineWidth MEMBER lineWidth)
    Q_PROPERTY(double sourceFontSize MEMBER sourceFontSize)
    Q_PROPERTY(double translationFontSize MEMBER translationFontSize)
    Q_PROPERTY(double minimumSourceFontSize MEMBER minimumSourceFontSize)
    Q_PROPERTY(double minimumTranslationFontSize MEMBER minimumTranslationFontSize)
    Q_PROPERTY(int maximumSourceLines MEMBER maximumSourceLines)
    Q_PROPERTY(int maximumTranslationLines MEMBER maximumTranslationLines)
    Q_PROPERTY(QColor sourceColor MEMBER sourceColor)
    Q_PROPERTY(QColor translationColor MEMBER translationColor)
    Q_PROPERTY(QColor backgroundColor MEMBER backgroundColor)
    Q_PROPERTY(QColor borderColor MEMBER borderColor)
    Q_PROPERTY(QColor shadowColor MEMBER shadowColor)
    Q_PROPERTY(QColor buttonColor MEMBER buttonColor)
    Q_PROPERTY(double horizontalPadding MEMBER horizontalPadding)
    Q_PROPERTY(double verticalPadding MEMBER verticalPadding)
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius)
    Q_PROPERTY(double borderWidth MEMBER borderWidth)
    Q_PROPERTY(double shadowRadius MEMBER shadowRadius)
    Q_PROPERTY(double shadowOffset MEMBER shadowOffset)

public:
    FloatingCaptionStyle() = default;
    FloatingCaptionStyle(const FloatingCaptionContent &content, const DesktopColors &desktop);

    bool operator==(const FloatingCaptionStyle &) const = default;

    bool showsSourceText = false;
    bool wantsSourceText = false; ///< whether it is shown where there is one
    bool showsTranslationText = false;
    QString sourceLine;
    QString translationLine; ///< a blank for an empty translation, so that the line keeps its height
    bool isTranslationFirst = false; ///< above the source
    QString fontFamily; ///< that the user has chosen; or empty
    double lineSpacing = 1; ///< in heights of the font's lines
    double lineWidth = 1; ///< of the width between the paddings
    double sourceFontSize = 0; ///< medium weight
    double translationFontSize = 0; ///< bold
    double minimumSourceFontSize = 0; ///< down to which a long text shrinks
    double minimumTranslationFontSize = 0;
    int maximumSourceLines = 2;
    int maximumTranslationLines = 3;
    QColor sourceColor;
    QColor translationColor;
    QColor backgroundColor; ///< with the opacity that the user has chosen
    QColor borderColor;
    QColor shadowColor; ///< behind the texts, whatever the theme
    QColor buttonColor; ///< behind what can be clicked, so strong that it can be read on anything
    double horizontalPadding = 28;
    double verticalPadding = 18;
    double cornerRadius = 14;
    double borderWidth = 1;
    double shadowRadius = 6;
    double shadowOffset = 2; ///< downwards
};

} // namespace lumaphone
