import QtQuick
import QtQuick.Templates as T

/// The opened list of a PopUpPicker.
ListView {
    /// What is chosen, for those who cannot see it.
    required property string title
    required property int chosenIndex
    /// Each choice says how wide it is: asking for what they take would go round in a circle, as they fill the list.
    property real widestChoice: 0

    implicitHeight: contentHeight
    implicitWidth: widestChoice
    clip: true
    highlightMoveDuration: 0
    boundsBehavior: Flickable.StopAtBounds
    T.ScrollBar.vertical: AppScrollBar {}
    Accessible.role: Accessible.List
    Accessible.name: title
}
