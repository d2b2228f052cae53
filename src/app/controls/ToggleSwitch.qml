import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// Turns something on and off. `toggled` asks to change `checked`.
T.Switch {
    id: toggle

    implicitWidth: text === "" ? implicitIndicatorWidth : implicitContentWidth
    implicitHeight: Theme.controlHeightSmall
    spacing: Theme.unit + 2
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: {
        toggle.toggle();
        toggle.toggled();
    }
    Accessible.onToggleAction: {
        toggle.toggle();
        toggle.toggled();
    }

    indicator: Rectangle {
        implicitWidth: 36
        implicitHeight: 22
        y: Math.round((toggle.height - height) / 2)
        radius: height / 2
        color: !toggle.enabled ? Theme.well : toggle.checked ? Theme.accent : Theme.isDark ? "#5a5b66" : "#8a8a97"

        Rectangle {
            x: 3 + toggle.visualPosition * (parent.width - width - 6)
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            radius: 8
            color: toggle.checked && Theme.isDark ? Theme.accentContrast : "#ffffff"

            Behavior on x {
                enabled: !toggle.down
                NumberAnimation {
                    duration: Theme.quick
                }
            }
        }

        FocusRing {
            isShown: toggle.visualFocus
            radius: height / 2
        }
    }

    contentItem: Text {
        leftPadding: toggle.indicator.width + toggle.spacing
        verticalAlignment: Text.AlignVCenter
        text: toggle.text
        font: toggle.font
        color: toggle.enabled ? Theme.text : Theme.textDisabled
        Accessible.ignored: true
    }
}
