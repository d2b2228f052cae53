import QtQuick
import Lumaphone.Controls

/// A short fact in a rounded field; where it has no room, the pointer shows all of it.
Rectangle {
    id: chip

    enum Tone {
        Neutral,
        Accent,
        Success,
        Warning,
        Danger
    }

    required property string text
    property string systemImage
    property int tone: Chip.Tone.Neutral
    property int maximumWidth: 480

    readonly property color foreground: [Theme.textSecondary, Theme.accentText, Theme.success, Theme.warning, Theme.danger][tone]
    readonly property real surroundings: 2 * Theme.gap + (systemImage === "" ? 0 : 21)

    implicitWidth: Math.min(maximumWidth, label.implicitWidth + surroundings)
    implicitHeight: 28
    radius: height / 2
    color: [Theme.well, Theme.accentWell, Theme.successWell, Theme.warningWell, Theme.dangerWell][tone]

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        anchors.verticalCenter: parent.verticalCenter
        x: Theme.gap
        spacing: 6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: chip.systemImage !== ""
            name: chip.systemImage
            color: chip.foreground
            size: 15
        }

        UiText {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(0, Math.min(implicitWidth, chip.width - chip.surroundings))
            text: chip.text
            color: chip.foreground
            font.pixelSize: Theme.small
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }

    HoverHandler {
        id: pointer
    }

    HelpTip {
        text: chip.text
        isWanted: pointer.hovered && label.truncated
    }
}
