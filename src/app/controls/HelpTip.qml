import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// What a control does, shown when the pointer rests on it or the keyboard is there.
T.ToolTip {
    id: tip

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + Theme.unit : 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
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
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.isDark ? "#3a3b44" : "#2b2c35"
    }
}
