import QtQuick
import Lumaphone.Controls

/// Text that was said or translated, with the glyphs of its own language.
Text {
    /// The raw value of a source language, such as "japanese"; anything else means Taiwan Traditional Chinese.
    property string language

    color: Theme.text
    font.family: Theme.fontFamilyOf(language)
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
