import QtQuick
import Lumaphone.Live

/// The pointer over a transcript: selects text of one column, across its lines. Lies under them, so that their buttons come first.
MouseArea {
    id: pointer

    required property FollowingListView list
    required property TranscriptModel transcript
    /// The column in which the selection was begun.
    property bool isInTranslation: false
    property bool isSelecting: false

    signal menuWanted(row: int, x: real, y: real)

    parent: list.contentItem
    z: -1
    y: list.contentY
    width: list.width
    height: list.height
    acceptedButtons: Qt.LeftButton | Qt.RightButton
    preventStealing: true
    cursorShape: Qt.IBeamCursor

    /// The line at a point, above and below all lines the nearest.
    function rowAt(y: real): int {
        const inList = list.contentY + Math.max(0, Math.min(y, list.height - 1));
        const row = list.indexAt(1, inList);
        return row >= 0 ? row : inList < list.originY ? 0 : list.count - 1;
    }
    function offsetAt(row: int): int {
        const line = list.itemAtIndex(row) as CaptionLineRow;
        return line ? line.offsetAt(pointer.isInTranslation, pointer.mouseX - line.x, list.contentY + pointer.mouseY - line.y) : 0;
    }
    function extend(): void {
        const row = pointer.rowAt(pointer.mouseY);
        pointer.transcript.extendSelection(row, pointer.offsetAt(row));
        if (pointer.transcript.hasSelection)
            list.isFollowing = false;
    }

    onPressed: mouse => {
        // A finger scrolls.
        mouse.accepted = mouse.source === Qt.MouseEventNotSynthesized && list.count > 0;
        if (!mouse.accepted)
            return;
        list.forceActiveFocus(Qt.MouseFocusReason);
        const row = pointer.rowAt(mouse.y);
        if (mouse.button === Qt.RightButton) {
            pointer.menuWanted(row, mouse.x, mouse.y);
            return;
        }
        pointer.isSelecting = true;
        if (mouse.modifiers & Qt.ShiftModifier && pointer.transcript.currentRow >= 0) {
            pointer.extend();
            return;
        }
        pointer.isInTranslation = (list.itemAtIndex(row) as CaptionLineRow)?.isTranslationAt(mouse.x) ?? false;
        pointer.transcript.beginSelection(row, pointer.isInTranslation, pointer.offsetAt(row));
    }
    onPositionChanged: {
        if (pointer.isSelecting)
            pointer.extend();
    }
    onReleased: {
        pointer.isSelecting = false;
        pointer.transcript.offerSelection();
    }
    onCanceled: pointer.isSelecting = false
    onDoubleClicked: mouse => {
        const row = pointer.rowAt(mouse.y);
        if (mouse.button === Qt.LeftButton && row >= 0) {
            pointer.transcript.selectWord(row, pointer.isInTranslation, pointer.offsetAt(row));
            pointer.transcript.offerSelection();
        }
    }

    // Beyond the edges the lines come to the pointer.
    Timer {
        interval: 30
        repeat: true
        running: pointer.isSelecting && (pointer.mouseY < 0 || pointer.mouseY > pointer.height)
        onTriggered: {
            pointer.list.scrollBy(pointer.mouseY < 0 ? Math.max(-48, pointer.mouseY) : Math.min(48, pointer.mouseY - pointer.height));
            pointer.extend();
        }
    }
}
