import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// A sentence that asks for attention.
Rectangle {
    id: notice

    required property string text
    property string systemImage: "exclamationmark.triangle.fill"
    property int tone: Chip.Tone.Warning
    readonly property color foreground: [Theme.textSecondary, Theme.accentText, Theme.success, Theme.warning, Theme.danger][tone]

    implicitHeight: row.implicitHeight + 2 * Theme.unit + 4
    implicitWidth: row.implicitWidth + 2 * Theme.gap
    radius: Theme.radius
    color: [Theme.well, Theme.accentWell, Theme.successWell, Theme.warningWell, Theme.dangerWell][tone]
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: Theme.gap
        anchors.rightMargin: Theme.gap
        spacing: Theme.unit + 2

        Symbol {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 2
            name: notice.systemImage
            color: notice.foreground
            size: 17
        }

        UiText {
            Layout.fillWidth: true
            text: notice.text
            color: notice.foreground
            font.pixelSize: Theme.small
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
