import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// An icon-only button of the command bar.
T.AbstractButton {
    id: button

    required property string systemImage
    required property string help
    property bool isDisabled: false
    property bool isSelected: false
    /// Whether a press on the button changes `isSelected`, so that it is announced as a state.
    property bool isToggle: false

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    enabled: !isDisabled
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: help
    Accessible.checkable: isToggle
    Accessible.checked: isSelected
    Accessible.onPressAction: button.clicked()

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.systemImage
            color: !button.enabled ? Theme.textDisabled : button.isSelected ? Theme.accentText : Theme.textSecondary
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: button.isSelected ? (button.hovered && button.enabled ? Qt.darker(Theme.accentWell, 1.04) : Theme.accentWell)
            : !button.enabled ? "transparent"
            : button.down ? Theme.wellPressed
            : button.hovered ? Theme.well : "transparent"

        FocusRing {
            isShown: button.visualFocus
        }
    }

    HelpTip {
        text: button.help
        isWanted: button.hovered || button.visualFocus
        isPressed: button.down
    }
}
