import QtQuick
import Lumaphone.Controls
import Lumaphone.Texts

/// Switches between the two workspaces. `picked` asks to change `selection`.
Rectangle {
    id: switcher

    /// "live" or "library".
    required property string selection

    property bool isPressed: false

    signal picked(workspace: string)

    implicitWidth: segments.implicitWidth + 6
    implicitHeight: Theme.controlHeight
    radius: Theme.radius
    color: Theme.well
    Accessible.role: Accessible.PageTabList
    Accessible.name: Texts.switchWorkspaces

    Row {
        id: segments

        anchors.centerIn: parent

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

    HoverHandler {
        id: pointer
    }

    HelpTip {
        text: Texts.switchWorkspaces
        isWanted: pointer.hovered
        isPressed: switcher.isPressed
    }
}
