pragma ComponentBehavior: Bound

import QtQuick
import Lumaphone.Controls
import Lumaphone.Live

/// What is selected and found in a text, drawn behind it.
Item {
    id: behind

    required property Text of
    /// Of the transcript's model.
    required property var marks

    Repeater {
        model: behind.marks.length === 0 ? []
            : TextPlaces.places(behind.of.text, behind.of.font, behind.of.width, behind.of.lineHeight, behind.marks)

        Rectangle {
            required property var modelData

            x: modelData.place.x
            y: modelData.place.y
            width: modelData.place.width
            height: modelData.place.height
            radius: modelData.kind === TranscriptModel.Selected ? 0 : 3
            color: [Theme.selection, Theme.found, Theme.foundHere][modelData.kind]
        }
    }
}
