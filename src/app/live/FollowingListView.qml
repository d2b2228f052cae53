import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A list that stays at its newest row until the user scrolls away, and returns there on request.
ListView {
    id: list

    /// Whether the newest row is kept in view.
    property bool isFollowing: true

    function follow(): void {
        list.isFollowing = true;
        list.settle();
    }
    function settle(): void {
        if (!list.isFollowing)
            return;
        list.positionViewAtEnd();
        list.contentY = list.lowest(); // the margin belongs to the end
    }
    function lowest(): real {
        return Math.max(list.highest(), list.originY + list.contentHeight + list.bottomMargin - list.height);
    }
    function highest(): real {
        return list.originY - list.topMargin;
    }
    function scrollBy(distance: real): void {
        list.contentY = Math.min(list.lowest(), Math.max(list.highest(), list.contentY + distance));
        list.isFollowing = list.atYEnd;
    }
    /// Obeys a command of the KeyTable, if it is one that scrolls.
    function scroll(command: string): bool {
        switch (command) {
        case "pageUp":
            list.scrollBy(-list.height * 0.9);
            return true;
        case "pageDown":
            list.scrollBy(list.height * 0.9);
            return true;
        case "first":
            list.scrollBy(-list.contentHeight);
            return true;
        case "newest":
            list.follow();
            return true;
        }
        return false;
    }

    clip: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: false
    currentIndex: -1

    onContentHeightChanged: settling.restart()
    onHeightChanged: settling.restart()
    onCountChanged: {
        if (list.count === 0)
            list.isFollowing = true;
    }
    onMovementStarted: list.isFollowing = false
    onMovementEnded: list.isFollowing = list.atYEnd

    // Once for all that changes in one turn.
    Timer {
        id: settling

        interval: 0
        onTriggered: list.settle()
    }

    T.ScrollBar.vertical: AppScrollBar {
        onPressedChanged: list.isFollowing = !pressed && list.atYEnd
    }
}
