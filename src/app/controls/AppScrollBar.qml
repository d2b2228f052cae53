import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A slim bar that shows while its view can be scrolled.
T.ScrollBar {
    id: bar

    implicitWidth: 12
    implicitHeight: 12
    padding: 3
    minimumSize: 0.06
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1
    // The keyboard scrolls the view itself.
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: bar.pressed ? Theme.textSecondary : bar.hovered ? Theme.textSoft : Theme.fieldBorder
    }
}
