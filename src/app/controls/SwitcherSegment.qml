import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// One of a few values that are all in view. `clicked` asks to choose it.
T.TabButton {
    id: segment

    property bool isChosen: false

    implicitWidth: Math.max(72, implicitContentWidth + 2 * Theme.space)
    implicitHeight: Theme.controlHeight - 6
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body
    font.bold: isChosen
    checked: isChosen

    Accessible.name: text
    Accessible.selected: isChosen
    Accessible.onPressAction: segment.clicked()

    // What is shown is what was decided, not what was clicked.
    onToggled: segment.checked = Qt.binding(() => segment.isChosen)

    contentItem: Text {
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        text: segment.text
        font: segment.font
        color: segment.isChosen || segment.hovered ? Theme.text : Theme.textSecondary
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.radius - 3
        color: !segment.isChosen ? "transparent" : Theme.isDark ? Theme.wellPressed : Theme.surface
        border.width: segment.isChosen && !Theme.isDark ? 1 : 0
        border.color: Theme.hairline

        FocusRing {
            isShown: segment.visualFocus
            gap: 0
        }
    }
}
