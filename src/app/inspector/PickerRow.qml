import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls

/// A picker with its name before it.
RowLayout {
    id: row

    required property string title
    property string systemImage
    required property var model
    required property string selection
    property bool isDisabled: false

    signal picked(value: string)

    spacing: Theme.unit

    Symbol {
        visible: row.systemImage !== ""
        name: row.systemImage
        size: 18
    }

    UiText {
        Layout.fillWidth: true
        text: row.title
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    PopUpPicker {
        objectName: row.objectName + ".picker"
        Layout.maximumWidth: 176
        help: row.title
        model: row.model
        selection: row.selection
        enabled: !row.isDisabled
        onPicked: value => row.picked(value)
    }
}
