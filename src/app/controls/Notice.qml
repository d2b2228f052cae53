import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// A sentence that asks for attention; where it has no room, the pointer shows all of it.
Rectangle {
    id: notice

    required property string text
    property string systemImage: "exclamationmark.triangle.fill"
    property int tone: Chip.Tone.Warning
    property int maximumLines: 3
    /// How many lines it would take, up to three.
    readonly property int wantedLines: whole.lineCount
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
            Layout.topMargin: 1
            name: notice.systemImage
            color: notice.foreground
            size: 17
        }

        UiText {
            id: label

            Layout.fillWidth: true
            text: notice.text
            color: notice.foreground
            font.pixelSize: Theme.small
            lineHeightMode: Text.FixedHeight
            lineHeight: 19
            wrapMode: Text.Wrap
            maximumLineCount: Math.max(1, notice.maximumLines)
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }

    // Lays out what the sentence would take.
    UiText {
        id: whole

        width: label.width
        visible: false
        text: notice.text
        font: label.font
        wrapMode: Text.Wrap
        maximumLineCount: 3
        Accessible.ignored: true
    }

    HoverHandler {
        id: pointer
    }

    HelpTip {
        text: notice.text
        isWanted: pointer.hovered && label.truncated
    }
}
