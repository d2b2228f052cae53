import QtQuick
import Lumaphone.Controls
import Lumaphone.Texts

/// The program's mark.
Rectangle {
    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    radius: Theme.radius
    color: Theme.accent
    Accessible.role: Accessible.Graphic
    Accessible.name: Texts.appName

    Symbol {
        anchors.centerIn: parent
        name: "captions.bubble.fill"
        color: Theme.accentContrast
        size: 22
    }
}
