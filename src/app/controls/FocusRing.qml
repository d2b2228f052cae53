import QtQuick
import Lumaphone.Controls

/// Shows around its parent where the keyboard is.
Rectangle {
    required property bool isShown
    property int gap: 2

    anchors.fill: parent
    anchors.margins: -gap - border.width
    color: "transparent"
    radius: Theme.radius + gap + 1
    border.width: 2
    border.color: Theme.accent
    visible: isShown
}
