import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls

/// One choice in the opened list of a PopUpPicker.
T.ItemDelegate {
    id: choice

    required property int index
    required property var modelData
    readonly property PickerList list: ListView.view as PickerList
    readonly property real wanted: list !== null ? implicitWidth : 0
    readonly property bool isChosen: list !== null && list.chosenIndex === index

    objectName: (list?.objectName ?? "") + "." + modelData.value
    width: list ? Math.max(list.width, implicitWidth) : implicitWidth
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeightSmall + 2
    leftPadding: Theme.unit
    rightPadding: Theme.space
    highlighted: ListView.isCurrentItem
    hoverEnabled: true
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body

    onWantedChanged: {
        if (choice.list)
            choice.list.widestChoice = Math.max(choice.list.widestChoice, choice.wanted);
    }
    onHighlightedChanged: {
        if (choice.highlighted && choice.list?.visible)
            ScreenReader.comeTo(choice);
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: modelData.title
    Accessible.selected: isChosen
    Accessible.focusable: true
    Accessible.focused: highlighted

    contentItem: RowLayout {
        spacing: Theme.unit

        Symbol {
            name: choice.isChosen ? "checkmark" : ""
            size: 16
            color: Theme.accentText
        }

        IconAndText {
            Layout.fillWidth: true
            objectName: choice.objectName + ".label"
            systemImage: choice.modelData.symbol ?? ""
            symbolSize: 16
            symbolColor: Theme.textSecondary
            text: choice.modelData.title
            font: choice.font
        }
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: choice.highlighted || choice.hovered ? Theme.wellHovered : "transparent"
    }
}
