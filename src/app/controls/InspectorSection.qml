import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// One group of controls of the inspector.
ColumnLayout {
    id: section

    required property string title
    default property alias content: body.data

    spacing: Theme.gap
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    UiText {
        text: section.title
        font.pixelSize: Theme.small
        font.bold: true
        color: Theme.textSoft
        Accessible.role: Accessible.Heading
    }

    ColumnLayout {
        id: body

        Layout.fillWidth: true
        spacing: Theme.unit
    }
}
