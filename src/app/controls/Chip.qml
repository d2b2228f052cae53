import QtQuick
import Lumaphone.Controls

/// A short fact in a rounded field.
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

    implicitWidth: Math.min(maximumWidth, row.implicitWidth + 2 * Theme.gap)
    implicitHeight: 28
    radius: height / 2
    color: [Theme.well, Theme.accentWell, Theme.successWell, Theme.warningWell, Theme.dangerWell][tone]

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: row

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
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, chip.maximumWidth - 2 * Theme.gap - (chip.systemImage === "" ? 0 : 21))
            text: chip.text
            color: chip.foreground
            font.pixelSize: Theme.small
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
