import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls

/// A slider with its name, symbol and value above it. `moved` asks to change `value`.
ColumnLayout {
    id: labeled

    required property string title
    required property string systemImage
    /// The value as people read it.
    required property string valueText
    property alias from: slider.from
    property alias to: slider.to
    property alias stepSize: slider.stepSize
    property real value

    signal moved(value: real)

    spacing: Theme.half

    SliderLabel {
        Layout.fillWidth: true
        title: labeled.title
        systemImage: labeled.systemImage
        value: labeled.valueText
    }

    T.Slider {
        id: slider

        Layout.fillWidth: true
        implicitHeight: Theme.margin
        value: labeled.value
        snapMode: T.Slider.SnapAlways
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        objectName: labeled.objectName + ".slider"

        Accessible.role: Accessible.Slider
        Accessible.name: labeled.title
        Accessible.description: labeled.valueText
        Accessible.onIncreaseAction: slider.nudge(1)
        Accessible.onDecreaseAction: slider.nudge(-1)

        function nudge(direction: int): void {
            labeled.moved(Math.min(to, Math.max(from, value + direction * stepSize)));
        }

        onMoved: {
            const wanted = slider.value;
            slider.value = Qt.binding(() => labeled.value);
            labeled.moved(wanted);
        }

        background: Rectangle {
            x: slider.leftPadding
            y: Math.round((slider.height - height) / 2)
            width: slider.availableWidth
            height: 4
            radius: 2
            color: Theme.wellPressed

            Rectangle {
                width: slider.visualPosition * parent.width
                height: parent.height
                radius: parent.radius
                color: slider.enabled ? Theme.accent : Theme.textDisabled
            }
        }

        handle: Rectangle {
            x: Math.round(slider.leftPadding + slider.visualPosition * (slider.availableWidth - width))
            y: Math.round((slider.height - height) / 2)
            width: 18
            height: 18
            radius: 9
            color: Theme.isDark ? "#f4f4f7" : "#ffffff"
            border.width: 1
            border.color: Theme.isDark ? "#00000000" : Theme.fieldBorder

            FocusRing {
                isShown: slider.visualFocus
                radius: width / 2
            }
        }
    }
}
