#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// How the height of the panel is shared by what it shows. Where both lines have no room the padding gives
/// way first, and then the source.
class CaptionRoom
{
    Q_GADGET
    QML_VALUE_TYPE(captionRoom)
    Q_PROPERTY(double padding MEMBER padding)
    Q_PROPERTY(double textHeight MEMBER textHeight)
    Q_PROPERTY(double sourceHeight MEMBER sourceHeight)
    Q_PROPERTY(bool showsSource MEMBER showsSource)

public:
    /// Of a line that is wanted; otherwise it is 0.
    struct LeastHeights
    {
        double source = 0;
        double translation = 0;
    };

    CaptionRoom() = default;
    CaptionRoom(double panelHeight, double wantedPadding, const LeastHeights &least);

    bool operator==(const CaptionRoom &) const = default;

    double padding = 0; ///< above and below
    double textHeight = 0; ///< for both lines
    double sourceHeight = 0; ///< of it, at most
    bool showsSource = false;
};

} // namespace lumaphone
