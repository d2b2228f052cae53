import QtQuick
import Lumaphone.Floating

/// A line of the caption panel: up to a few lines of text that shrinks before it loses its oldest words.
Item {
    id: line

    required property string text
    property alias font: drawn.font
    property alias color: drawn.color
    property alias fontSize: fit.fontSize
    property alias minimumFontSize: fit.minimumFontSize
    property alias maximumLines: fit.maximumLines
    property alias lineSpacing: fit.lineSpacing
    property alias availableHeight: fit.availableHeight
    readonly property alias shownText: fit.shownText
    readonly property alias isWhole: fit.isWhole
    /// Of one line at the smallest size, and of all the text.
    readonly property alias leastHeight: fit.leastHeight
    readonly property alias wantedHeight: fit.wantedHeight
    readonly property alias lineCount: drawn.lineCount

    implicitHeight: drawn.implicitHeight * fit.scale

    Text {
        id: drawn

        width: line.width / fit.scale
        transformOrigin: Item.TopLeft
        scale: fit.scale
        text: fit.shownText
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        font.pixelSize: fit.pixelSize
        lineHeight: fit.lineSpacing
        Accessible.ignored: true
    }

    CaptionLineFit {
        id: fit

        text: line.text
        fontFamily: line.font.family
        fontWeight: line.font.weight
        availableWidth: line.width
    }
}
