import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// The name of a value with its symbol, and the value itself.
RowLayout {
    id: label

    required property string title
    required property string value
    property string suffix
    property string systemImage

    spacing: Theme.unit

    Symbol {
        name: label.systemImage
        size: 18
        visible: label.systemImage !== ""
    }

    UiText {
        Layout.fillWidth: true
        text: label.title
        elide: Text.ElideRight
    }

    UiText {
        text: label.value + label.suffix
        color: Theme.textSecondary
        font.pixelSize: Theme.small
    }
}
