import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

/// Finds text in the session that is shown. `found` says in which line something is looked at.
FocusScope {
    id: bar

    required property TranscriptModel transcript
    /// Where the search begins.
    property int startRow: 0

    signal found(row: int)
    signal closed

    function begin(row: int): void {
        bar.startRow = row;
        field.selectAll();
        bar.search();
    }
    function search(): void {
        bar.transcript.search(field.text, bar.startRow);
        bar.tell();
    }
    function step(by: int): void {
        bar.transcript.lookAtNext(by);
        bar.tell();
    }
    function tell(): void {
        if (bar.transcript.foundRow >= 0)
            bar.found(bar.transcript.foundRow);
    }

    RowLayout {
        anchors.fill: parent
        spacing: Theme.half

        TextFieldBox {
            id: field

            objectName: "find"
            Layout.preferredWidth: 320
            Layout.maximumWidth: 320
            Layout.fillWidth: true
            focus: true
            accessibleName: Texts.findInCaptions
            placeholderText: Texts.findPlaceholder
            systemImage: "magnifyingglass"
            isClearable: true
            onEdited: bar.search()
            Keys.onPressed: event => {
                const isReturn = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
                if (isReturn)
                    bar.step(event.modifiers & Qt.ShiftModifier ? -1 : 1);
                event.accepted = isReturn;
            }
        }

        ToolbarIconButton {
            objectName: "find.previous"
            systemImage: "chevron.up"
            help: Texts.findPrevious
            isDisabled: bar.transcript.foundCount === 0
            onClicked: bar.step(-1)
        }

        ToolbarIconButton {
            objectName: "find.next"
            systemImage: "chevron.down"
            help: Texts.findNext
            isDisabled: bar.transcript.foundCount === 0
            onClicked: bar.step(1)
        }

        UiText {
            objectName: "find.count"
            Layout.fillWidth: true
            Layout.leftMargin: Theme.half
            text: bar.transcript.searchText === "" ? "" : bar.transcript.foundCount === 0 ? Texts.notFound
                : Texts.foundOf(bar.transcript.foundNumber, bar.transcript.foundCount)
            font.pixelSize: Theme.small
            color: Theme.textSecondary
            elide: Text.ElideRight
        }

        ToolbarIconButton {
            objectName: "find.close"
            systemImage: "xmark"
            help: Texts.closeFind
            onClicked: bar.closed()
        }
    }

    Keys.onEscapePressed: bar.closed()
}
