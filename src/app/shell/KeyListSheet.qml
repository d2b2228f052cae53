pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Keys
import Lumaphone.Texts

/// All keys of the window, and what they do.
Sheet {
    id: sheet

    objectName: "keys"
    width: 760
    title: Texts.keysTitle
    initialFocus: area.flickable
    onClosed: area.rewind()

    ScrollArea {
        id: area

        name: "keys"
        title: sheet.title
        Layout.fillWidth: true
        Layout.fillHeight: true

        Row {
            id: sides

            width: parent?.width ?? 0
            spacing: Theme.wide

            Repeater {
                // The transcript has a column for itself.
                model: [KeyTable.groups.slice(0, -1), KeyTable.groups.slice(-1)]

                Column {
                    id: side

                    required property var modelData

                    width: Math.floor((sides.width - sides.spacing) / 2)
                    spacing: Theme.space

                    Repeater {
                        model: side.modelData

                        KeyGroup {
                            required property var modelData

                            width: side.width
                            title: modelData.title
                            rows: modelData.rows
                        }
                    }
                }
            }
        }
    }

    footer: [
        Item {
            Layout.fillWidth: true
        },
        PrimaryButton {
            objectName: "keys.close"
            text: Texts.close
            onClicked: sheet.close()
        }
    ]
}
