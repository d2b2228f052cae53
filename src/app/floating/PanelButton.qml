import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A small button on the caption panel, faint until the pointer is there, so that it does not call readers away.
T.AbstractButton {
    id: button

    required property string help
    required property bool isOffered
    /// The rest of the panel is there to be dragged.
    readonly property bool takesPresses: true
    property string systemImage
    required property color color
    /// Behind it.
    required property color well

    enabled: isOffered
    visible: opacity > 0
    opacity: !isOffered ? 0 : hovered || text !== "" ? 1 : 0.6
    implicitHeight: 24
    implicitWidth: text === "" ? implicitHeight : implicitContentWidth + 2 * Theme.unit
    leftPadding: text === "" ? 0 : Theme.unit
    rightPadding: leftPadding
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    font.family: Theme.fontFamily
    font.pixelSize: Theme.caption
    Accessible.role: Accessible.Button
    Accessible.name: help
    Accessible.onPressAction: button.clicked()

    Behavior on opacity {
        NumberAnimation {
            duration: 2 * Theme.quick
        }
    }

    contentItem: IconAndText {
        systemImage: button.systemImage
        symbolSize: 14
        spacing: Theme.half
        isCentred: true
        text: button.text
        font: button.font
        color: button.color
    }

    background: Rectangle {
        radius: height / 2
        color: button.well
    }

    HelpTip {
        text: button.help
        isWanted: button.isOffered && button.hovered
        isPressed: button.down
    }
}
