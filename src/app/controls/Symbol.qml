import QtQuick
import Lumaphone.Controls

/// One of the program's own symbols, by name, in any colour. Decorative: what it means is said by the control it is in.
Item {
    id: symbol

    property string name
    property color color: Theme.textSecondary
    property int size: 20

    implicitWidth: size
    implicitHeight: size

    Image {
        anchors.centerIn: parent
        width: symbol.size
        height: symbol.size
        sourceSize.width: symbol.size
        sourceSize.height: symbol.size
        source: symbol.name === "" ? "" : "image://symbol/" + symbol.name + "/" + symbol.color.toString().slice(1)
        Accessible.ignored: true
    }
}
