#pragma once

#include "app/floating/FittedCaption.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// Fits the text of a caption line for a view, while text and room change.
class CaptionLineFit : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QString fontFamily READ fontFamily WRITE setFontFamily NOTIFY fontFamilyChanged)
    Q_PROPERTY(int fontWeight READ fontWeight WRITE setFontWeight NOTIFY fontWeightChanged)
    Q_PROPERTY(double fontSize READ fontSize WRITE setFontSize NOTIFY fontSizeChanged)
    Q_PROPERTY(
        double minimumFontSize READ minimumFontSize WRITE setMinimumFontSize NOTIFY minimumFontSizeChanged)
    Q_PROPERTY(int maximumLines READ maximumLines WRITE setMaximumLines NOTIFY maximumLinesChanged)
    Q_PROPERTY(double lineSpacing READ lineSpacing WRITE setLineSpacing NOTIFY lineSpacingChanged)
    Q_PROPERTY(double availableWidth READ availableWidth WRITE setAvailableWidth NOTIFY availableWidthChanged)
    Q_PROPERTY(
        double availableHeight READ availableHeight WRITE setAvailableHeight NOTIFY availableHeightChanged)
    Q_PROPERTY(QString shownText READ shownText NOTIFY fitChanged)
    Q_PROPERTY(bool isWhole READ isWhole NOTIFY fitChanged)
    Q_PROPERTY(int pixelSize READ pixelSize NOTIFY fitChanged)
    Q_PROPERTY(double scale READ scale NOTIFY fitChanged)
    Q_PROPERTY(double leastHeight READ leastHeight NOTIFY leastHeightChanged)
    Q_PROPERTY(double wantedHeight READ wantedHeight NOTIFY wantedHeightChanged)

public:
    explicit CaptionLineFit(QObject *parent = nullptr);

    const QString &text() const { return m_text; }
    void setText(const QString &text);
    QString fontFamily() const { return m_font.family(); }
    void setFontFamily(const QString &family);
    int fontWeight() const { return m_font.weight(); }
    void setFontWeight(int weight);
    double fontSize() const { return m_bounds.fontSize; }
    void setFontSize(double points);
    double minimumFontSize() const { return m_bounds.minimumFontSize; }
    void setMinimumFontSize(double points);
    int maximumLines() const { return m_bounds.maximumLines; }
    void setMaximumLines(int lines);
    double lineSpacing() const { return m_bounds.lineSpacing; }
    void setLineSpacing(double spacing);
    double availableWidth() const { return m_bounds.available.width(); }
    void setAvailableWidth(double width);
    double availableHeight() const { return m_bounds.available.height(); }
    void setAvailableHeight(double height);

    /// The text as it has room, or its newest words.
    const QString &shownText() const { return m_fit.text; }
    bool isWhole() const { return m_fit.isWhole; }
    /// It is drawn with a font of so many pixels and scaled.
    int pixelSize() const { return DrawnFontSize(m_fit.fontSize).pixels; }
    double scale() const { return DrawnFontSize(m_fit.fontSize).scale; }
    /// Of one line at the smallest size.
    double leastHeight() const { return m_leastHeight; }
    /// That the text would take if there were no end of it.
    double wantedHeight() const { return m_wantedHeight; }

signals:
    void textChanged();
    void fontFamilyChanged();
    void fontWeightChanged();
    void fontSizeChanged();
    void minimumFontSizeChanged();
    void maximumLinesChanged();
    void lineSpacingChanged();
    void availableWidthChanged();
    void availableHeightChanged();
    void fitChanged();
    void leastHeightChanged();
    void wantedHeightChanged();

private:
    using Signal = void (CaptionLineFit::*)();
    template<typename Value> bool set(Value &member, const Value &value, Signal changed);
    void fit();
    void measure();

    QString m_text;
    QFont m_font;
    CaptionLineBounds m_bounds;
    FittedCaption m_fit;
    double m_leastHeight = 0;
    double m_wantedHeight = 0;
};

} // namespace lumaphone
