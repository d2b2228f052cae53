import QtQuick
import Lumaphone.Controls
import Lumaphone.Floating

/// A line of the caption panel: up to a few lines of text that shrinks before it is cut off.
Text {
    id: line

    property string language
    required property real fontSize
    required property real minimumFontSize
    required property int maximumLines
    required property real availableHeight

    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.Wrap
    elide: Text.ElideRight
    maximumLineCount: maximumLines
    textFormat: Text.PlainText
    font.family: Theme.fontFamilyOf(language)
    font.pixelSize: fit.pixelSize
    Accessible.ignored: true

    CaptionLineFit {
        id: fit

        text: line.text
        fontFamily: line.font.family
        fontWeight: line.font.weight
        fontSize: line.fontSize
        minimumFontSize: line.minimumFontSize
        maximumLines: line.maximumLines
        availableWidth: line.width
        availableHeight: line.availableHeight
    }
}
