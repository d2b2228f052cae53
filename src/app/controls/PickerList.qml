import QtQuick
import QtQuick.Templates as T
import Lumaphone

/// The opened list of a PopUpPicker.
ListView {
    required property int chosenIndex

    implicitHeight: contentHeight
    implicitWidth: contentItem.childrenRect.width
    clip: true
    highlightMoveDuration: 0
    boundsBehavior: Flickable.StopAtBounds
    T.ScrollBar.vertical: AppScrollBar {}
}
