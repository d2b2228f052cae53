import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// One line of an opened transcript while it is read: source, and translation below it.
ColumnLayout {
    id: line

    required property int number
    required property string sourceText
    required property string translatedText
    /// Raw value.
    required property string sourceLanguage

    spacing: Theme.half
    Accessible.role: Accessible.ListItem
    Accessible.name: Texts.followed(Texts.followed(line.number, line.sourceText), line.translatedText)

    LanguageText {
        Layout.fillWidth: true
        text: line.sourceText
        language: line.sourceLanguage
        color: Theme.textSecondary
        lineHeight: 1.3
        Accessible.ignored: true
    }

    UiText {
        Layout.topMargin: Theme.half
        text: Texts.taiwanTranslation
        font.pixelSize: Theme.caption
        color: Theme.textSoft
        Accessible.ignored: true
    }

    LanguageText {
        Layout.fillWidth: true
        text: line.translatedText === "" ? Texts.noTranslation : line.translatedText
        color: line.translatedText === "" ? Theme.textSoft : Theme.text
        font.pixelSize: Theme.title
        lineHeight: 1.3
        Accessible.ignored: true
    }
}
