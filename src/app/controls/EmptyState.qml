import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// What a view says while there is nothing in it; `content` are buttons below the words.
Item {
    id: state

    required property string systemImage
    required property string title
    property string message
    default property alias content: actions.data

    Accessible.role: Accessible.StaticText
    Accessible.name: title
    Accessible.description: message

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.margin, 400)
        spacing: Theme.unit

        Symbol {
            Layout.alignment: Qt.AlignHCenter
            Layout.bottomMargin: Theme.half
            name: state.systemImage
            size: 32
            color: Theme.textSoft
        }

        UiText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: state.title
            font.pixelSize: state.message === "" ? Theme.body : Theme.title
            font.bold: state.message !== ""
            color: state.message === "" ? Theme.textSecondary : Theme.text
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        UiText {
            Layout.fillWidth: true
            visible: state.message !== ""
            horizontalAlignment: Text.AlignHCenter
            text: state.message
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            lineHeight: 1.35
            Accessible.ignored: true
        }

        RowLayout {
            id: actions

            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.gap
            visible: children.length > 0
            spacing: Theme.gap
        }
    }
}
