import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A rounded surface that holds one subject.
T.Pane {
    padding: 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    // A frame that is nothing by itself.
    Accessible.ignored: Accessible.name === ""

    background: Rectangle {
        radius: Theme.radiusLarge
        color: Theme.surface
        border.width: 1
        border.color: Theme.hairline
    }
}
