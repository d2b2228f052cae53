import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A menu in the program's look; its entries are AppMenuItem and AppMenuSeparator. Its title is for those who
/// cannot see it.
T.Menu {
    id: menu

    implicitWidth: Math.max(200, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    margins: Theme.unit
    padding: 6
    overlap: 1

    delegate: AppMenuItem {}

    // Its own item is what a screen reader comes to.
    Binding {
        target: menu.contentItem.parent.Accessible
        property: "name"
        value: menu.title
    }

    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < menu.count; ++i)
                widest = Math.max(widest, menu.itemAt(i).implicitWidth);
            return widest;
        }
        model: menu.contentModel
        interactive: Window.window ? contentHeight + menu.topPadding + menu.bottomPadding > Window.window.height : false
        clip: true
        currentIndex: menu.currentIndex
    }

    background: PopupSurface {}
}
