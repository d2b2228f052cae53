import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// How far something is; without an end in sight while `indeterminate`.
T.ProgressBar {
    id: bar

    required property string title
    /// Where the mark without an end in sight is, from 0 to 1.
    property real sweep

    implicitWidth: 96
    implicitHeight: Theme.half
    Accessible.name: title

    NumberAnimation on sweep {
        running: bar.indeterminate && bar.visible && !Theme.isMotionReduced
        loops: Animation.Infinite
        from: 0
        to: 1
        duration: 1600
        easing.type: Easing.InOutQuad
    }

    contentItem: Item {
        clip: true

        Rectangle {
            x: !bar.indeterminate ? 0 : Theme.isMotionReduced ? (bar.width - width) / 2 : bar.sweep * (bar.width + width) - width
            width: bar.width * (bar.indeterminate ? 0.3 : bar.visualPosition)
            height: bar.height
            radius: height / 2
            color: Theme.accent
        }
    }

    background: Rectangle {
        radius: height / 2
        color: Theme.wellPressed
    }
}
