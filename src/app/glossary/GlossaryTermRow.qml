import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Texts

/// One term of the glossary. The list it is in has the keyboard; the buttons are for the pointer and for assistive
/// technology.
T.ItemDelegate {
    id: row

    required property int index
    required property string source
    required property string target
    required property string detail
    required property string note
    required property bool isTermEnabled
    property bool isCurrent: false

    signal switched
    signal edited
    signal deleted

    implicitHeight: content.implicitHeight + 2 * Theme.unit
    leftPadding: Theme.gap
    rightPadding: Theme.unit
    focusPolicy: Qt.NoFocus
    hoverEnabled: true

    Accessible.role: Accessible.ListItem
    Accessible.name: source + (target === "" ? "" : " → " + target)
    Accessible.description: Texts.listed(detail, isTermEnabled ? Texts.isEnabled : Texts.isDisabled)
    Accessible.focusable: true
    Accessible.focused: isCurrent
    onIsCurrentChanged: {
        if (row.isCurrent)
            ScreenReader.comeTo(row);
    }
    onIndexChanged: ScreenReader.keepInOrder(row)
    Component.onCompleted: ScreenReader.keepInOrder(row)
    onDoubleClicked: row.edited()
    // Else it would be a click; the list knows the other keys.
    Keys.onSpacePressed: row.switched()

    RowLayout {
        id: content

        anchors.verticalCenter: parent.verticalCenter
        x: row.leftPadding
        width: row.availableWidth
        spacing: Theme.gap

        Symbol {
            name: row.isTermEnabled ? "checkmark.circle.fill" : "minus.circle"
            size: 18
            color: row.isTermEnabled ? Theme.success : Theme.textSoft
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            UiText {
                Layout.fillWidth: true
                objectName: row.objectName + ".text"
                text: row.target === "" ? row.source : row.source + " → " + row.target
                color: row.isTermEnabled ? Theme.text : Theme.textSoft
                elide: Text.ElideRight
                Accessible.ignored: true
            }

            UiText {
                Layout.fillWidth: true
                text: row.note === "" ? row.detail : row.detail + " · " + row.note
                font.pixelSize: Theme.caption
                color: Theme.textSecondary
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }

        ToolbarIconButton {
            objectName: row.objectName + ".toggle"
            focusPolicy: Qt.NoFocus
            systemImage: row.isTermEnabled ? "minus.circle" : "checkmark.circle"
            help: row.isTermEnabled ? Texts.disable : Texts.enable
            Accessible.name: Texts.actionOn(help, row.source)
            onClicked: row.switched()
        }

        ToolbarIconButton {
            objectName: row.objectName + ".edit"
            focusPolicy: Qt.NoFocus
            systemImage: "pencil"
            help: Texts.edit
            Accessible.name: Texts.actionOn(help, row.source)
            onClicked: row.edited()
        }

        ToolbarIconButton {
            objectName: row.objectName + ".delete"
            focusPolicy: Qt.NoFocus
            systemImage: "trash"
            help: Texts.deleteIt
            Accessible.name: Texts.actionOn(help, row.source)
            onClicked: row.deleted()
        }
    }

    background: Rectangle {
        color: row.isCurrent ? Theme.accentWell : row.hovered ? Theme.well : "transparent"
        radius: Theme.radius

        Rectangle {
            anchors.fill: parent
            visible: row.isCurrent
            radius: parent.radius
            color: "transparent"
            border.width: 2
            border.color: Theme.accent
        }
    }
}
