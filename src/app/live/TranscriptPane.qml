import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

/// One side of the transcript, as high as its column: at the top what it is, and a way to copy all of its text. The lines lie over it.
Item {
    id: pane

    required property string title
    /// Shown while there is no text.
    property string description
    /// All that is read in this column.
    required property JoinedText text
    property bool isPrimary: false
    readonly property real headHeight: 40

    implicitHeight: headHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    RowLayout {
        width: parent.width
        height: pane.headHeight
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
            text: pane.text.isEmpty ? pane.description : ""
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
            isDisabled: pane.text.isEmpty
            onClicked: pane.text.copy()
        }
    }
}
