pragma ComponentBehavior: Bound

import QtQuick

/// Tells a screen reader something without taking the keyboard: a notice that appears with a text. Several take turns, as the screen
/// reader asks for the text of each some time after it has appeared.
Item {
    id: announcer

    property int newest: 0

    function announce(text: string): void {
        const former = notices.itemAt(announcer.newest);
        announcer.newest = (announcer.newest + 1) % notices.count;
        const notice = notices.itemAt(announcer.newest);
        former.visible = false;
        notice.text = text;
        notice.visible = true;
    }

    Repeater {
        id: notices

        model: 16

        Item {
            property string text

            objectName: visible ? "announcer.notice" : ""
            visible: false
            Accessible.role: Accessible.Notification
            Accessible.name: text
        }
    }
}
