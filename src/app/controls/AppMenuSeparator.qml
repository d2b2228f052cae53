import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A line between two groups of a menu.
T.MenuSeparator {
    implicitHeight: 9
    implicitWidth: 100
    verticalPadding: 4

    contentItem: Rectangle {
        implicitHeight: 1
        color: Theme.hairline
    }
}
