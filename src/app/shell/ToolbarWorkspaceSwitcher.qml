import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Texts

/// Switches between the two workspaces. `picked` asks to change `selection`.
T.Control {
    id: switcher

    /// "live" or "library".
    required property string selection

    property bool isPressed: false

    signal picked(workspace: string)

    implicitWidth: implicitContentWidth + 2 * padding
    implicitHeight: Theme.controlHeight
    padding: 3
    hoverEnabled: true
    Accessible.role: Accessible.PageTabList
    Accessible.name: Texts.switchWorkspaces

    contentItem: Row {
        SwitcherSegment {
            objectName: "workspace.live"
            text: Texts.live
            isChosen: switcher.selection === "live"
            onDownChanged: switcher.isPressed = down
            onClicked: switcher.picked("live")
        }

        SwitcherSegment {
            objectName: "workspace.library"
            text: Texts.library
            isChosen: switcher.selection === "library"
            onDownChanged: switcher.isPressed = down
            onClicked: switcher.picked("library")
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: Theme.well
    }

    HelpTip {
        text: Texts.switchWorkspaces
        isWanted: switcher.hovered
        isPressed: switcher.isPressed
    }
}
