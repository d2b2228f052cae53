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
    /// Tab leads out of the line.
    signal tabbedOut(isForward: bool)
    /// The cursor of that field is elsewhere, or it has just got the keyboard.
    signal cursorMoved(field: Item, cursor: rect)

    /// Gives the keyboard to the field that Tab leads to.
    function enter(isForward: bool): void {
        if (isForward)
            source.field.forceActiveFocus(Qt.TabFocusReason);
        else
            translation.field.forceActiveFocus(Qt.BacktabFocusReason);
    }

    spacing: Theme.unit

    TextAreaBox {
        id: source

        Layout.fillWidth: true
        objectName: "transcriptLine.source"
        label: Texts.source
        accessibleName: Texts.sourceOfLine(line.number)
        language: line.sourceLanguage
        text: line.sourceText
        isTabGuided: true
        onEdited: line.sourceEdited(source.text)
        onTabbedOut: isForward => isForward ? translation.field.forceActiveFocus(Qt.TabFocusReason) : line.tabbedOut(false)
        onCursorMoved: cursor => line.cursorMoved(source.field, cursor)
    }

    TextAreaBox {
        id: translation

        Layout.fillWidth: true
        objectName: "transcriptLine.translation"
        label: Texts.taiwanTranslation
        accessibleName: Texts.translationOfLine(line.number)
        text: line.translatedText
        isTabGuided: true
        onEdited: line.translationEdited(translation.text)
        onTabbedOut: isForward => isForward ? line.tabbedOut(true) : source.field.forceActiveFocus(Qt.BacktabFocusReason)
        onCursorMoved: cursor => line.cursorMoved(translation.field, cursor)
    }
}
