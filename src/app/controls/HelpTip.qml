import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// What a control does, or all of what it says, shown when the pointer rests on it or the keyboard is there. Whoever uses the control needs
/// it no more.
T.ToolTip {
    id: tip

    /// Whether the pointer or the keyboard is there.
    property bool isWanted: false
    /// Whether the control is being pressed.
    property bool isPressed: false
    property bool isUsed: false

    visible: isWanted && !isUsed && text !== ""
    onIsWantedChanged: {
        if (!isWanted)
            isUsed = false;
    }
    onIsPressedChanged: {
        if (isPressed)
            isUsed = true;
    }

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + Theme.unit : 0
    implicitWidth: Math.min(implicitContentWidth + leftPadding + rightPadding, 440)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: Theme.unit
    horizontalPadding: Theme.gap
    verticalPadding: 6
    delay: 600
    timeout: 8000
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: UiText {
        text: tip.text
        color: Theme.isDark ? Theme.text : "#ffffff"
        font.pixelSize: Theme.small
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.isDark ? "#3a3b44" : "#2b2c35"
    }
}
