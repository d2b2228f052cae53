#pragma once

#include <QFont>
#include <QObject>
#include <QSizeF>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// What a text of a few lines has to fit into.
struct CaptionLineBounds
{
    double fontSize = 0; ///< wanted, in points
    double minimumFontSize = 0; ///< below which it does not shrink
    int maximumLines = 1;
    QSizeF available;
};

/// The largest whole size, in pixels, at which `text` fits its bounds; the smallest allowed one if it never
/// does.
int fittingPixelSize(const QString &text, QFont font, const CaptionLineBounds &bounds);

/// The same for a view: keeps the size of its text fitting while text and room change.
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
    Q_PROPERTY(double availableWidth READ availableWidth WRITE setAvailableWidth NOTIFY availableWidthChanged)
    Q_PROPERTY(
        double availableHeight READ availableHeight WRITE setAvailableHeight NOTIFY availableHeightChanged)
    Q_PROPERTY(int pixelSize READ pixelSize NOTIFY pixelSizeChanged)

public:
    explicit CaptionLineFit(QObject *parent = nullptr);

    const QString &text() const { return m_text; }
    void setText(const QString &text);
    QString fontFamily() const { return m_fontFamily; }
    void setFontFamily(const QString &family);
    int fontWeight() const { return m_fontWeight; }
    void setFontWeight(int weight);
    double fontSize() const { return m_bounds.fontSize; }
    void setFontSize(double points);
    double minimumFontSize() const { return m_bounds.minimumFontSize; }
    void setMinimumFontSize(double points);
    int maximumLines() const { return m_bounds.maximumLines; }
    void setMaximumLines(int lines);
    double availableWidth() const { return m_width; }
    void setAvailableWidth(double width);
    double availableHeight() const { return m_height; }
    void setAvailableHeight(double height);
    int pixelSize() const { return m_pixelSize; }

signals:
    void textChanged();
    void fontFamilyChanged();
    void fontWeightChanged();
    void fontSizeChanged();
    void minimumFontSizeChanged();
    void maximumLinesChanged();
    void availableWidthChanged();
    void availableHeightChanged();
    void pixelSizeChanged();

private:
    template<typename Value> void set(Value &member, const Value &value, void (CaptionLineFit::*changed)());
    void update();

    QString m_text;
    QString m_fontFamily;
    int m_fontWeight = QFont::Normal;
    CaptionLineBounds m_bounds;
    double m_width = 0;
    double m_height = 0;
    int m_pixelSize = 1;
};

} // namespace lumaphone
