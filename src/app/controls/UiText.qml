import QtQuick
import Lumaphone.Controls

/// Text of the interface itself, in Taiwan Traditional Chinese.
Text {
    color: Theme.text
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
