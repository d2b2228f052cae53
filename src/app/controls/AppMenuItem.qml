import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// One command of a menu, or one choice of a group when it is checkable.
T.MenuItem {
    id: item

    property string systemImage
    /// The keys that do the same, as people read them.
    property string keys

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeightSmall + 2
    horizontalPadding: Theme.gap
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body
    hoverEnabled: true

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.onPressAction: item.triggered()

    contentItem: Item {
        implicitWidth: children[0].implicitWidth + (item.keys === "" ? 0 : Theme.margin + children[1].implicitWidth)
        implicitHeight: children[0].implicitHeight

        IconAndText {
            anchors.verticalCenter: parent.verticalCenter
            systemImage: item.checkable ? (item.checked ? "checkmark" : "") : item.systemImage
            reservesSymbol: item.checkable
            spacing: Theme.unit + 2
            text: item.text
            font: item.font
            color: item.enabled ? Theme.text : Theme.textDisabled
            symbolColor: !item.enabled ? Theme.textDisabled : item.checkable ? Theme.accentText : Theme.textSecondary
        }

        UiText {
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            text: item.keys
            font.pixelSize: Theme.caption
            color: Theme.textSecondary
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: item.highlighted || item.hovered ? Theme.wellHovered : "transparent"
    }
}
