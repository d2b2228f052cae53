import QtQuick
import Lumaphone.Controls

/// The raised, shadowed surface of menus, pickers and sheets.
Item {
    property real radius: Theme.radius

    Shadow {
        anchors.fill: surface
        source: surface
        verticalOffset: 6
        radius: 20
        samples: 41
        color: Theme.shadow
        cached: true
    }

    Rectangle {
        id: surface

        anchors.fill: parent
        radius: parent.radius
        color: Theme.raised
        border.width: 1
        border.color: Theme.hairline
    }
}
