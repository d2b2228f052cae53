pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Library
import Lumaphone.Texts

/// An opened transcript: the note and the terms above its lines, which are read or edited.
ListView {
    id: reader

    required property string note
    required property TranscriptLinesModel lines
    required property list<string> glossaryTerms
    property bool isEditing: false

    signal noteEdited(text: string)

    readonly property real columnWidth: Math.max(0, Math.min(width - 2 * Theme.margin, 880))

    function highest(): real {
        return reader.originY - reader.topMargin;
    }
    function lowest(): real {
        return Math.max(reader.highest(), reader.originY + reader.contentHeight + reader.bottomMargin - reader.height);
    }
    /// Brings the cursor of a field into view.
    function follow(field: Item, cursor: rect): void {
        const top = reader.contentItem.mapFromItem(field, 0, cursor.y).y - Theme.margin;
        const bottom = top + cursor.height + 2 * Theme.margin;
        if (top < reader.contentY)
            reader.contentY = Math.max(reader.highest(), top);
        else if (bottom > reader.contentY + reader.height)
            reader.contentY = bottom - reader.height;
    }
    /// Gives the keyboard to a row's field, wherever that row is.
    function enterRow(index: int, isForward: bool): void {
        reader.currentIndex = index;
        reader.positionViewAtIndex(index, ListView.Contain);
        (reader.currentItem as TranscriptReaderRow)?.enter(isForward);
    }
    /// Tab leads from row to row, from the note to the first and from the last to what comes after the transcript.
    function leaveRow(index: int, isForward: bool): void {
        const next = index + (isForward ? 1 : -1);
        if (next < 0) {
            note.field.forceActiveFocus(Qt.BacktabFocusReason);
        } else if (next < reader.count) {
            reader.enterRow(next, isForward);
        } else {
            rest.focus = true; // where the keyboard comes back to
            note.field.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
        }
    }
    function leaveNote(isForward: bool): void {
        if (isForward)
            reader.leaveRow(reader.isEditing ? -1 : reader.count, true);
        else
            rest.forceActiveFocus(Qt.BacktabFocusReason);
    }

    model: lines
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    reuseItems: true
    cacheBuffer: 400
    // The row that is edited is the current one, which stays alive wherever the view goes.
    highlightFollowsCurrentItem: false
    bottomMargin: Theme.margin
    T.ScrollBar.vertical: AppScrollBar {}

    Accessible.role: Accessible.List
    Accessible.name: Texts.transcript
    Keys.onTabPressed: note.field.forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: reader.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Keys.onEscapePressed: rest.forceActiveFocus()
    Keys.onPressed: event => {
        const page = Math.max(40, height - 80);
        const steps = {
            [Qt.Key_Up]: -60,
            [Qt.Key_Down]: 60,
            [Qt.Key_PageUp]: -page,
            [Qt.Key_PageDown]: page
        };
        if (event.key === Qt.Key_Home) {
            contentY = reader.highest();
        } else if (event.key === Qt.Key_End) {
            positionViewAtEnd();
            contentY = reader.lowest();
        } else if (event.key === Qt.Key_Return && isEditing) {
            reader.enterRow(Math.max(0, reader.indexAt(width / 2, contentY + Theme.margin)), true);
        } else if (steps[event.key] !== undefined) {
            contentY = Math.max(reader.highest(), Math.min(reader.lowest(), contentY + steps[event.key]));
        } else {
            return;
        }
        event.accepted = true;
    }

    // Has the keyboard while no field has it.
    Item {
        id: rest

        parent: reader
    }

    // Not a header component, which could not refer to this view.
    Item {
        id: head

        parent: reader.contentItem
        y: reader.originY - height
        width: reader.width
        height: top.implicitHeight + Theme.space + Theme.margin

        // A note that grows while it is written, or is seen from its beginning, pushes the rows down and not itself up.
        onHeightChanged: {
            const scrolled = reader.contentY - reader.highest();
            const isKept = note.activeFocus || scrolled < 1;
            reader.topMargin = head.height;
            if (isKept)
                reader.contentY = reader.highest() + scrolled;
        }

        ColumnLayout {
            id: top

            x: Theme.margin
            y: Theme.space
            width: reader.columnWidth
            spacing: Theme.space

            TextAreaBox {
                id: note

                Layout.fillWidth: true
                objectName: "library.note"
                accessibleName: Texts.note
                placeholderText: Texts.note
                text: reader.note
                isTabGuided: true
                onEdited: reader.noteEdited(note.text)
                onTabbedOut: isForward => reader.leaveNote(isForward)
                onCursorMoved: cursor => reader.follow(note.field, cursor)
            }

            GlossaryTermChips {
                Layout.fillWidth: true
                terms: reader.glossaryTerms
            }
        }
    }

    delegate: TranscriptReaderRow {
        id: row

        width: reader.width
        columnWidth: reader.columnWidth
        isEditing: reader.isEditing
        objectName: "library.line." + index
        onTabbedOut: isForward => reader.leaveRow(row.index, isForward)
        onCursorMoved: (field, cursor) => {
            reader.currentIndex = row.index;
            reader.follow(field, cursor);
        }
    }

    FocusRing {
        isShown: reader.activeFocus && !note.activeFocus && (!reader.isEditing || rest.activeFocus)
        gap: -4
        parent: reader
    }
}
