pragma ComponentBehavior: Bound

import QtQuick
import Lumaphone.Controls
import Lumaphone.Keys
import Lumaphone.Texts

/// What the keys do in one part of the window.
Column {
    id: group

    required property string title
    /// Of the KeyTable.
    required property var rows

    spacing: Theme.half

    UiText {
        width: group.width
        text: group.title
        font.bold: true
        bottomPadding: Theme.half
        Accessible.role: Accessible.Heading
    }

    Repeater {
        model: group.rows

        Item {
            id: row

            required property var modelData
            readonly property var labels: KeyTable.labelsOf(modelData)

            width: group.width
            height: Math.max(words.height, caps.height)
            Accessible.role: Accessible.StaticText
            Accessible.name: Texts.stated(modelData.text, labels.join(Texts.comma))

            UiText {
                id: words

                anchors.verticalCenter: parent.verticalCenter
                width: row.width - caps.width - Theme.gap
                text: row.modelData.text
                font.pixelSize: Theme.small
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            Row {
                id: caps

                anchors.verticalCenter: parent.verticalCenter
                anchors.right: parent.right
                spacing: Theme.half

                Repeater {
                    model: row.labels

                    Rectangle {
                        id: cap

                        required property string modelData

                        width: label.implicitWidth + 2 * Theme.unit
                        height: 26
                        radius: Theme.radiusSmall
                        color: Theme.surface
                        border.width: 1
                        border.color: Theme.fieldBorder

                        UiText {
                            id: label

                            anchors.centerIn: parent
                            text: cap.modelData
                            font.pixelSize: Theme.caption
                            color: Theme.textSecondary
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
    }
}
