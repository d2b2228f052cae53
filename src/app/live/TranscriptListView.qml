import QtQuick
import Lumaphone.Controls
import Lumaphone.Keys
import Lumaphone.Live

/// The lines of the session to be read: selected with pointer and keyboard, and copied.
FollowingListView {
    id: list

    required property TranscriptModel transcript

    signal findWanted

    /// Brings a line into view, and stays there.
    function reveal(row: int): void {
        list.isFollowing = false;
        list.positionViewAtIndex(row, ListView.Contain);
        list.isFollowing = list.atYEnd;
    }
    /// The first line in view.
    function topRow(): int {
        return Math.max(0, list.indexAt(1, list.contentY + 1));
    }
    /// From the current line up or down; where there is none, at the end of what is in view.
    function rowBy(distance: int): int {
        if (list.transcript.currentRow >= 0)
            return Math.max(0, Math.min(list.transcript.currentRow + distance, list.count - 1));
        const last = list.indexAt(1, list.contentY + list.height - list.bottomMargin - 1);
        return last >= 0 ? last : list.count - 1;
    }
    function goBy(distance: int): void {
        list.transcript.goTo(list.rowBy(distance));
        list.reveal(list.transcript.currentRow);
    }
    function selectBy(distance: int): void {
        list.transcript.selectTo(list.rowBy(distance));
        list.reveal(list.transcript.currentRow);
    }
    function openMenu(row: int, x: real, y: real): void {
        menu.row = row;
        menu.popup(list, x, y);
    }
    function openMenuOfRow(): void {
        const row = list.rowBy(0);
        list.reveal(row);
        const line = list.itemAtIndex(row);
        list.openMenu(row, Theme.margin, line ? line.y - list.contentY + line.height : 0);
    }
    function copy(): void {
        if (list.transcript.hasSelection)
            list.transcript.copySelection();
        else
            list.transcript.copyLine(list.rowBy(0));
    }
    /// Whether there was something to do for a command of the KeyTable.
    function obey(command: string): bool {
        if (list.count === 0)
            return false;
        const actions = {
            previousLine: () => list.goBy(-1),
            nextLine: () => list.goBy(1),
            selectUp: () => list.selectBy(-1),
            selectDown: () => list.selectBy(1),
            selectAll: () => list.transcript.selectAll(),
            copySelection: () => list.copy(),
            copyLine: () => list.transcript.copyLine(list.rowBy(0)),
            openLineMenu: () => list.openMenuOfRow()
        };
        if (command === "leaveSelection") {
            const had = list.transcript.hasSelection;
            list.transcript.clearSelection();
            return had;
        }
        if (!(command in actions))
            return list.scroll(command);
        actions[command]();
        return true;
    }

    model: list.transcript
    Keys.onPressed: event => event.accepted = list.obey(KeyTable.commandOf("transcript", event.key, event.modifiers))

    TranscriptPointer {
        list: list
        transcript: list.transcript
        onMenuWanted: (row, x, y) => list.openMenu(row, x, y)
    }

    LineMenu {
        id: menu

        transcript: list.transcript
        onFindWanted: list.findWanted()
    }
}
