import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// One line of an opened transcript while it is edited: source and translation, each in a field of its own.
ColumnLayout {
    id: line

    required property int number
    required property string sourceText
    required property string translatedText
    /// Raw value.
    required property string sourceLanguage

    signal sourceEdited(text: string)
    signal translationEdited(text: string)

    spacing: Theme.unit

    TextAreaBox {
        id: source

        Layout.fillWidth: true
        objectName: "transcriptLine.source"
        label: Texts.source
        accessibleName: Texts.sourceOfLine(line.number)
        language: line.sourceLanguage
        text: line.sourceText
        onEdited: line.sourceEdited(source.text)
    }

    TextAreaBox {
        id: translation

        Layout.fillWidth: true
        objectName: "transcriptLine.translation"
        label: Texts.taiwanTranslation
        accessibleName: Texts.translationOfLine(line.number)
        text: line.translatedText
        onEdited: line.translationEdited(translation.text)
    }
}
