import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// One saved transcript in the list.
T.ItemDelegate {
    id: row

    required property int index
    required property string title
    required property string subtitle
    required property bool isSelected
    /// Whether the list it is in has the keyboard.
    property bool isListFocused: false
    /// Whether the keyboard is here.
    readonly property bool isCurrent: isSelected && isListFocused

    onIndexChanged: ScreenReader.keepInOrder(row)
    Component.onCompleted: ScreenReader.keepInOrder(row)

    implicitHeight: texts.implicitHeight + 2 * Theme.gap
    horizontalPadding: Theme.gap
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    highlighted: isSelected

    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: subtitle
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focusable: true
    Accessible.focused: isCurrent
    onIsCurrentChanged: {
        if (row.isCurrent)
            ScreenReader.comeTo(row);
    }
    Accessible.onPressAction: row.clicked()

    Column {
        id: texts

        anchors.verticalCenter: parent.verticalCenter
        x: row.leftPadding
        width: row.availableWidth
        spacing: Theme.half

        UiText {
            width: parent.width
            text: row.title
            font.bold: true
            color: row.isSelected ? Theme.accentText : Theme.text
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        UiText {
            width: parent.width
            text: row.subtitle
            font.pixelSize: Theme.caption
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            lineHeight: 1.2
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: row.isSelected ? Theme.accentWell : row.hovered ? Theme.well : "transparent"

        Rectangle {
            anchors.fill: parent
            visible: row.isCurrent
            radius: parent.radius
            color: "transparent"
            border.width: 2
            border.color: Theme.accent
        }
    }
}
