#pragma once

#include <QColor>
#include <QFont>
#include <QQuickItem>
#include <QRectF>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace lumaphone {

/// Paints what is selected and found in a text, to lie behind it and be as wide. A list full of marks is
/// moved and searched while its user types: an item for each mark would take longer than a frame.
class MarkedPlaces : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    // How the text stands, see TextSetting.
    Q_PROPERTY(QString text MEMBER m_text NOTIFY changed)
    Q_PROPERTY(QFont font MEMBER m_font NOTIFY changed)
    Q_PROPERTY(double lineHeight MEMBER m_lineHeight NOTIFY changed)
    /// Of a TranscriptModel.
    Q_PROPERTY(QVariantList marks MEMBER m_marks NOTIFY changed)
    Q_PROPERTY(QColor selectedColor MEMBER m_selectedColor NOTIFY changed)
    Q_PROPERTY(QColor foundColor MEMBER m_foundColor NOTIFY changed)
    Q_PROPERTY(QColor lookedAtColor MEMBER m_lookedAtColor NOTIFY changed)

public:
    struct Place
    {
        QRectF rectangle;
        QColor color;

        bool operator==(const Place &) const = default;
    };

    explicit MarkedPlaces(QQuickItem *parent = nullptr);

signals:
    void changed();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *former, UpdatePaintNodeData *data) override;

private:
    QString m_text;
    QFont m_font;
    double m_lineHeight = 0;
    QVariantList m_marks;
    QColor m_selectedColor;
    QColor m_foundColor;
    QColor m_lookedAtColor;
    std::vector<Place> m_places;
};

} // namespace lumaphone
