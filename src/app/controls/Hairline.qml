import QtQuick
import Lumaphone.Controls

/// A separator one pixel thick.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.hairline
    Accessible.role: Accessible.Separator
    Accessible.ignored: true
}
