import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// A button with a text and perhaps a symbol.
T.Button {
    id: button

    enum Kind {
        Plain,
        Primary,
        Destructive,
        Quiet
    }

    property int kind: ActionButton.Kind.Plain
    property string systemImage
    property string help
    property bool isCompact: false

    readonly property color foreground: {
        if (!enabled)
            return Theme.textDisabled;
        if (kind === ActionButton.Kind.Primary)
            return Theme.accentContrast;
        if (kind === ActionButton.Kind.Destructive)
            return Theme.danger;
        return kind === ActionButton.Kind.Quiet ? Theme.accentText : Theme.text;
    }
    readonly property color fill: {
        if (kind === ActionButton.Kind.Primary)
            return !enabled ? Theme.well : down ? Theme.accentPressed : hovered ? Theme.accentHovered : Theme.accent;
        if (kind === ActionButton.Kind.Destructive)
            return !enabled ? Theme.well : hovered || down ? Qt.darker(Theme.dangerWell, 1.04) : Theme.dangerWell;
        if (kind === ActionButton.Kind.Quiet)
            return enabled && (hovered || down) ? Theme.accentWell : "transparent";
        return !enabled ? Theme.well : down ? Theme.wellPressed : hovered ? Theme.wellHovered : Theme.well;
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: isCompact ? Theme.controlHeightSmall : Theme.controlHeight
    leftPadding: systemImage === "" ? Theme.space : Theme.gap
    rightPadding: Theme.space
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    font.family: Theme.fontFamily
    font.pixelSize: isCompact ? Theme.small : Theme.body
    font.bold: kind === ActionButton.Kind.Primary

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: help
    Accessible.onPressAction: button.clicked()

    contentItem: IconAndText {
        isCentred: true
        systemImage: button.systemImage
        symbolSize: button.isCompact ? 16 : 18
        text: button.text
        font: button.font
        color: button.foreground
    }

    background: Rectangle {
        radius: Theme.radius
        color: button.fill

        FocusRing {
            isShown: button.visualFocus
        }
    }

    HelpTip {
        text: button.help
        isWanted: button.hovered || button.visualFocus
        isPressed: button.down
    }
}
