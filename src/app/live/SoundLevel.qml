pragma ComponentBehavior: Bound

import QtQuick
import Lumaphone.Controls

/// How loud it is, in a row of bars.
Row {
    id: meter

    required property int level
    property int highestLevel: 6
    property int barWidth: 3
    property int barHeight: 12
    property color color: Theme.accent

    spacing: barWidth
    Accessible.ignored: true

    Repeater {
        model: meter.highestLevel

        Rectangle {
            required property int index

            anchors.bottom: parent?.bottom
            width: meter.barWidth
            height: Math.round(meter.barHeight * (0.4 + 0.6 * index / (meter.highestLevel - 1)))
            radius: width / 2
            color: index < meter.level ? meter.color : Theme.wellPressed
        }
    }
}
