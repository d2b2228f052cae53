import QtQuick
import Lumaphone.Controls

/// A command-bar button that opens the menu given as its child.
ToolbarIconButton {
    id: button

    default property AppMenu menu

    isSelected: menu && menu.visible
    onClicked: menu.visible ? menu.close() : menu.popup(button, button.width - menu.implicitWidth, button.height + Theme.half)
    Accessible.role: Accessible.ButtonMenu

    Binding {
        target: button.menu
        property: "title"
        value: button.help
    }
}
