import QtQuick
import QtQuick.Templates as T
import Lumaphone

/// How far something is; without an end in sight while `indeterminate`.
T.ProgressBar {
    id: bar

    required property string title

    implicitWidth: 96
    implicitHeight: Theme.half
    Accessible.name: title

    contentItem: Item {
        clip: true

        Rectangle {
            id: done

            width: parent.width * (bar.indeterminate ? 0.3 : bar.visualPosition)
            height: parent.height
            radius: height / 2
            color: Theme.accent

            NumberAnimation on x {
                running: bar.indeterminate && bar.visible
                loops: Animation.Infinite
                from: -done.width
                to: bar.width
                duration: 1600
                easing.type: Easing.InOutQuad
                onStopped: done.x = 0
            }
        }
    }

    background: Rectangle {
        radius: height / 2
        color: Theme.wellPressed
    }
}
