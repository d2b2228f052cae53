import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// One thing that is offered: its size and licence, and how far its installation is.
Rectangle {
    id: row

    required property string title
    required property string statusText
    required property string licenceText
    required property bool isReady
    required property bool isInstalling
    required property bool isError
    required property double progress

    implicitHeight: column.implicitHeight + 2 * Theme.gap
    radius: Theme.radius
    color: Theme.well
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    ColumnLayout {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.margins: Theme.gap
        spacing: Theme.half

        UiText {
            Layout.fillWidth: true
            text: row.title
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 6

            Symbol {
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: 2
                visible: row.isReady || row.isError
                name: row.isReady ? "checkmark.circle.fill" : "exclamationmark.triangle.fill"
                color: row.isReady ? Theme.success : Theme.danger
                size: 15
            }

            UiText {
                objectName: row.objectName + ".status"
                Layout.fillWidth: true
                text: row.statusText
                font.pixelSize: Theme.small
                color: row.isReady ? Theme.success : row.isError ? Theme.danger : Theme.textSecondary
                wrapMode: Text.Wrap
                Accessible.role: row.isError ? Accessible.AlertMessage : Accessible.StaticText
            }
        }

        AppProgressBar {
            objectName: row.objectName + ".progress"
            Layout.fillWidth: true
            Layout.topMargin: Theme.half
            visible: row.isInstalling
            title: row.title
            indeterminate: row.progress < 0
            value: Math.max(0, row.progress)
        }

        Hairline {
            Layout.fillWidth: true
            Layout.topMargin: Theme.half
            visible: licence.visible
        }

        UiText {
            id: licence

            objectName: row.objectName + ".licence"
            Layout.fillWidth: true
            Layout.topMargin: Theme.half
            visible: text !== "" && !row.isReady
            text: row.licenceText
            font.pixelSize: Theme.small
            color: Theme.textSecondary
            lineHeight: 1.3
            wrapMode: Text.Wrap
        }
    }
}
