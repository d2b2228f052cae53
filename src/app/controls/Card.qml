import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A rounded surface that holds one subject.
T.Pane {
    padding: 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    background: Rectangle {
        radius: Theme.radiusLarge
        color: Theme.surface
        border.width: 1
        border.color: Theme.hairline
    }
}
