pragma ComponentBehavior: Bound

import QtQuick
import Lumaphone.Controls

/// A row of an opened transcript: its texts, or the fields to edit them, which are made when editing begins.
FocusScope {
    id: row

    required property int index
    required property int number
    required property string sourceText
    required property string translatedText
    required property string sourceLanguage
    required property var model
    required property bool isEditing
    required property real columnWidth

    /// Tab leads out of the row.
    signal tabbedOut(isForward: bool)
    /// The cursor of that field is elsewhere, or it has just got the keyboard.
    signal cursorMoved(field: Item, cursor: rect)

    /// What is in the row now. Not a loader's, which cannot make what knows this row.
    property Item line: null

    /// Gives the keyboard to the field that Tab leads to.
    function enter(isForward: bool): void {
        (row.line as EditableTranscriptLine)?.enter(isForward);
    }
    function build(): void {
        if (row.line !== null) {
            row.line.visible = false; // it goes a moment later
            row.line.destroy();
        }
        row.line = (row.isEditing ? editable : readable).createObject(row) as Item;
    }

    implicitHeight: (row.line?.implicitHeight ?? 0) + Theme.margin
    onIsEditingChanged: row.build()
    onIndexChanged: ScreenReader.keepInOrder(row)
    Component.onCompleted: {
        row.build();
        ScreenReader.keepInOrder(row);
    }

    Component {
        id: readable

        ReadableTranscriptLine {
            x: Theme.margin
            width: row.columnWidth
            number: row.number
            sourceText: row.sourceText
            translatedText: row.translatedText
            sourceLanguage: row.sourceLanguage
        }
    }

    Component {
        id: editable

        EditableTranscriptLine {
            x: Theme.margin
            width: row.columnWidth
            number: row.number
            sourceText: row.sourceText
            translatedText: row.translatedText
            sourceLanguage: row.sourceLanguage
            onSourceEdited: text => row.model.sourceText = text
            onTranslationEdited: text => row.model.translatedText = text
            onTabbedOut: isForward => row.tabbedOut(isForward)
            onCursorMoved: (field, cursor) => row.cursorMoved(field, cursor)
        }
    }
}
