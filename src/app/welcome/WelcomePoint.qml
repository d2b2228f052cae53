import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// One thing that a new user is told, with what can be chosen at once at its right and more of it below.
RowLayout {
    id: point

    required property string systemImage
    required property string title
    property string text
    property alias choice: choice.data
    default property alias content: more.data

    spacing: Theme.space

    Rectangle {
        Layout.alignment: Qt.AlignTop
        implicitWidth: Theme.controlHeight
        implicitHeight: Theme.controlHeight
        radius: Theme.radius
        color: Theme.accentWell

        Symbol {
            anchors.centerIn: parent
            name: point.systemImage
            size: 18
            color: Theme.accentText
        }
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: Theme.unit

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.gap

            ColumnLayout {
                Layout.fillWidth: true
                Layout.minimumHeight: Theme.controlHeight
                spacing: 2

                UiText {
                    Layout.fillWidth: true
                    text: point.title
                    font.bold: true
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                }

                UiText {
                    Layout.fillWidth: true
                    visible: text !== ""
                    text: point.text
                    font.pixelSize: Theme.small
                    color: Theme.textSecondary
                    lineHeight: 1.25
                    wrapMode: Text.Wrap
                }
            }

            RowLayout {
                id: choice
            }
        }

        ColumnLayout {
            id: more

            Layout.fillWidth: true
            visible: children.length > 0
            spacing: Theme.unit
        }
    }
}
