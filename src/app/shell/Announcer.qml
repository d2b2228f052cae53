import QtQuick

/// Tells a screen reader something without taking the keyboard: a notice that appears with a text.
Item {
    id: announcer

    function announce(text: string): void {
        notice.visible = false;
        notice.text = text;
        notice.visible = true;
    }

    Item {
        id: notice

        objectName: "announcer.notice"

        property string text

        visible: false
        Accessible.role: Accessible.Notification
        Accessible.name: text
    }
}
