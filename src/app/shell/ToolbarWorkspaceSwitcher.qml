import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// Switches between the two workspaces. `picked` asks to change `selection`.
T.Control {
    id: switcher

    /// "live" or "library".
    required property string selection

    signal picked(workspace: string)

    implicitWidth: implicitContentWidth + 2 * padding
    implicitHeight: Theme.controlHeight
    padding: 3
    hoverEnabled: true
    Accessible.role: Accessible.PageTabList
    Accessible.name: "切換即時字幕與字幕紀錄庫"

    contentItem: Row {
        SwitcherSegment {
            objectName: "workspace.live"
            text: "即時"
            isChosen: switcher.selection === "live"
            onClicked: switcher.picked("live")
        }

        SwitcherSegment {
            objectName: "workspace.library"
            text: "紀錄庫"
            isChosen: switcher.selection === "library"
            onClicked: switcher.picked("library")
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: Theme.well
    }

    HelpTip {
        text: "切換即時字幕與字幕紀錄庫"
        visible: switcher.hovered
    }
}
