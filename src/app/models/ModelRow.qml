import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// One thing that works offline: what there is of it, and what can be done about it. A scope of its own, so that the keyboard
/// stays in the row when a press replaces one button with another.
FocusScope {
    id: row

    required property string title
    required property string statusText
    required property string installTitle
    required property bool isReady
    required property bool isInstallable
    required property bool isInstalling
    required property bool isError
    required property bool isRemovable
    required property bool hasLicence
    required property double progress

    signal wanted
    signal cancelled
    signal removed
    signal licenceWanted

    implicitHeight: column.implicitHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: Texts.stated(row.title, row.statusText)

    ColumnLayout {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 2

        Item {
            Layout.fillWidth: true
            // A title of two lines has as much room around it as one of one line has.
            implicitHeight: Math.max(Theme.controlHeightSmall, titleText.implicitHeight + Theme.gap)

            Symbol {
                id: symbol

                anchors.verticalCenter: parent.verticalCenter
                name: row.isReady ? "checkmark.circle.fill" : row.isError ? "exclamationmark.triangle.fill"
                    : row.isInstallable ? "tray.and.arrow.down" : "minus.circle"
                color: row.isReady ? Theme.success : row.isError ? Theme.danger : row.isInstalling ? Theme.accentText : Theme.textSecondary
                size: 18
            }

            UiText {
                id: titleText

                anchors.left: symbol.right
                anchors.right: buttons.left
                anchors.leftMargin: Theme.unit
                anchors.rightMargin: Theme.unit
                anchors.verticalCenter: parent.verticalCenter
                text: row.title
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            Row {
                id: buttons

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.unit

                ToolbarIconButton {
                    objectName: row.objectName + ".licence"
                    visible: row.hasLicence
                    implicitWidth: Theme.controlHeightSmall
                    implicitHeight: Theme.controlHeightSmall
                    systemImage: "info.circle"
                    help: Texts.licence
                    Accessible.name: Texts.actionOn(help, row.title)
                    onClicked: row.licenceWanted()
                }

                ActionButton {
                    objectName: row.objectName + ".install"
                    visible: row.isInstallable && !row.isReady && !row.isInstalling
                    text: row.installTitle
                    isCompact: true
                    Accessible.name: Texts.actionOn(row.installTitle, row.title)
                    onClicked: row.wanted()
                    onDoubleClicked: {}
                }

                ToolbarIconButton {
                    objectName: row.objectName + ".cancel"
                    visible: row.isInstalling
                    implicitWidth: Theme.controlHeightSmall
                    implicitHeight: Theme.controlHeightSmall
                    systemImage: "pause.circle"
                    help: Texts.pauseInstallation
                    Accessible.name: Texts.actionOn(help, row.title)
                    onClicked: row.cancelled()
                    // It may be the second click on the button whose place this one takes.
                    onDoubleClicked: {}
                }

                ToolbarIconButton {
                    objectName: row.objectName + ".remove"
                    visible: row.isRemovable
                    implicitWidth: Theme.controlHeightSmall
                    implicitHeight: Theme.controlHeightSmall
                    systemImage: "trash"
                    help: Texts.removeIt
                    Accessible.name: Texts.actionOn(help, row.title)
                    onClicked: row.removed()
                }
            }
        }

        UiText {
            objectName: row.objectName + ".status"
            Layout.fillWidth: true
            Layout.leftMargin: 18 + Theme.unit
            text: row.statusText
            font.pixelSize: Theme.small
            color: row.isError ? Theme.danger : Theme.textSecondary
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        AppProgressBar {
            objectName: row.objectName + ".progress"
            Layout.fillWidth: true
            Layout.leftMargin: 18 + Theme.unit
            Layout.topMargin: 2
            visible: row.isInstalling
            title: row.title
            indeterminate: row.progress < 0
            value: Math.max(0, row.progress)
        }
    }
}
