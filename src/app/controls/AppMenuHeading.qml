import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// The name of the group of commands below it.
T.MenuItem {
    id: heading

    implicitWidth: implicitContentWidth + 2 * Theme.gap
    implicitHeight: 26
    horizontalPadding: Theme.gap
    enabled: false
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    contentItem: UiText {
        verticalAlignment: Text.AlignVCenter
        text: heading.text
        font.pixelSize: Theme.caption
        font.bold: true
        color: Theme.textSoft
        Accessible.ignored: true
    }
}
