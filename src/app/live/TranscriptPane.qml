import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// One side of the transcript: the head of its column, with what it is and a way to copy all of it.
Item {
    id: pane

    required property string title
    /// Shown while there is nothing to read.
    property string description
    property bool isPrimary: false
    property bool isCopyable: false

    signal copied

    implicitHeight: 36

    RowLayout {
        anchors.fill: parent
        spacing: Theme.unit

        UiText {
            text: pane.title
            font.pixelSize: Theme.small
            font.bold: true
            color: pane.isPrimary ? Theme.text : Theme.textSecondary
            Accessible.role: Accessible.Heading
        }

        UiText {
            Layout.fillWidth: true
            text: pane.description
            font.pixelSize: Theme.small
            color: Theme.textSoft
            elide: Text.ElideRight
        }

        ToolbarIconButton {
            objectName: pane.objectName + ".copy"
            implicitWidth: 30
            implicitHeight: 30
            systemImage: "doc.on.doc"
            help: Texts.copyAllOf(pane.title)
            isDisabled: !pane.isCopyable
            onClicked: pane.copied()
        }
    }
}
