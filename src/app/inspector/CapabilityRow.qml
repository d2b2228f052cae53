import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// Whether the provider can do something.
RowLayout {
    id: row

    required property string title
    required property bool isEnabled

    spacing: Theme.unit
    Accessible.role: Accessible.StaticText
    Accessible.name: Texts.stated(title, isEnabled ? Texts.isAvailable : Texts.isUnavailable)

    Symbol {
        name: row.isEnabled ? "checkmark.circle.fill" : "minus.circle"
        color: row.isEnabled ? Theme.success : Theme.textSoft
        size: 17
    }

    UiText {
        Layout.fillWidth: true
        text: row.title
        font.pixelSize: Theme.small
        Accessible.ignored: true
    }

    UiText {
        text: row.isEnabled ? Texts.isAvailable : Texts.isUnavailable
        font.pixelSize: Theme.small
        color: row.isEnabled ? Theme.success : Theme.textSoft
        Accessible.ignored: true
    }
}
