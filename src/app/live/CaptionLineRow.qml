import QtQuick
import Lumaphone.Controls

/// One line of the transcript: what was said, and its translation beside it. It keeps its height when the translation arrives,
/// unless that needs more room.
Item {
    id: row

    required property string sourceText
    required property string translatedText
    required property string sourceLanguage
    required property bool isFinal
    required property bool isPending
    required property string time
    readonly property real columnWidth: Math.floor((width - Theme.margin) / 2)

    width: ListView.view ? ListView.view.width - Theme.margin + Theme.half : implicitWidth
    implicitHeight: Math.max(source.height, translation.height) + Theme.gap
    Accessible.role: Accessible.ListItem
    Accessible.name: isPending ? sourceText : sourceText + "\n" + translatedText
    Accessible.description: time

    LanguageText {
        id: source

        width: row.columnWidth
        text: row.sourceText
        language: row.sourceLanguage
        font.pixelSize: 15
        lineHeightMode: Text.FixedHeight
        lineHeight: 24
        color: row.isFinal ? Theme.textSecondary : Theme.textSoft
        Accessible.ignored: true
    }

    LanguageText {
        id: translation

        x: row.columnWidth + Theme.margin
        width: row.columnWidth
        text: row.translatedText
        font.pixelSize: 15
        lineHeightMode: Text.FixedHeight
        lineHeight: 24
        color: row.isFinal && !row.isPending ? Theme.text : Theme.textSoft
        Accessible.ignored: true
    }
}
