import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// Chooses one of a few values. `model` is a list of objects with `value`, `title` and perhaps `symbol`; the chosen value is
/// `selection`, and `picked` asks to change it.
T.ComboBox {
    id: picker

    required property string help
    property string selection
    property int alignment: Qt.AlignRight
    property bool isSymbolShown: false

    signal picked(value: string)

    implicitWidth: Math.max(96, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.gap
    rightPadding: Theme.wide + 2
    textRole: "title"
    valueRole: "value"
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body

    currentIndex: {
        const choices = picker.model;
        for (let i = 0; i < choices.length; ++i) {
            if (choices[i].value === picker.selection)
                return i;
        }
        return -1;
    }
    // What is shown is what was decided, not what was clicked.
    onActivated: index => {
        const value = picker.model[index].value;
        picker.currentIndex = Qt.binding(() => picker.model.findIndex(choice => choice.value === picker.selection));
        if (value !== picker.selection)
            picker.picked(value);
    }

    Accessible.role: Accessible.ComboBox
    Accessible.name: help
    Accessible.description: displayText
    Accessible.onPressAction: picker.popup.open()

    contentItem: IconAndText {
        systemImage: picker.isSymbolShown && picker.currentIndex >= 0 ? picker.model[picker.currentIndex].symbol ?? "" : ""
        symbolSize: 16
        text: picker.displayText
        font: picker.font
        color: picker.enabled ? Theme.text : Theme.textDisabled
        symbolColor: picker.enabled ? Theme.textSecondary : Theme.textDisabled
    }

    indicator: Symbol {
        x: picker.width - width - Theme.unit - 2
        y: Math.round((picker.height - height) / 2)
        name: "chevron.up.chevron.down"
        size: 16
        color: picker.enabled ? Theme.textSecondary : Theme.textDisabled
    }

    background: Rectangle {
        radius: Theme.radius
        color: !picker.enabled ? Theme.well : picker.down ? Theme.wellPressed : picker.hovered ? Theme.wellHovered : Theme.well

        FocusRing {
            isShown: picker.visualFocus
        }
    }

    delegate: PickerChoice {}

    popup: T.Popup {
        y: picker.height + Theme.half
        x: picker.alignment === Qt.AlignRight ? picker.width - width : 0
        width: Math.max(picker.width, implicitContentWidth + leftPadding + rightPadding)
        height: Math.min(implicitContentHeight + topPadding + bottomPadding, 360)
        padding: 6
        margins: Theme.unit
        // Its own item is the dialog that a screen reader comes to.
        onAboutToShow: contentItem.parent.Accessible.name = picker.help
        onClosed: {
            if (picker.activeFocus)
                ScreenReader.comeTo(picker);
        }

        contentItem: PickerList {
            objectName: picker.objectName + ".choices"
            title: picker.help
            chosenIndex: picker.currentIndex
            // Choices that outlived it would be destroyed twice along with the picker while a screen reader listens.
            model: picker.popup.visible ? picker.delegateModel : null
            currentIndex: picker.highlightedIndex
        }

        background: PopupSurface {}
    }

    HelpTip {
        text: picker.help
        isWanted: picker.hovered
        isPressed: picker.down
    }
}
