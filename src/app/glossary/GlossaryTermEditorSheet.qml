import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Glossary
import Lumaphone.Texts

/// Edits one term of the glossary. `saved` asks to put it into the glossary.
Sheet {
    id: sheet

    required property GlossaryTermEditor term
    required property var modes

    signal saved

    objectName: "glossaryEditor"
    width: 480
    title: Texts.editTerm
    subtitle: Texts.editTermSubtitle
    systemImage: "pencil"
    initialFocus: source

    TextFieldBox {
        id: source

        Layout.fillWidth: true
        objectName: "glossaryEditor.source"
        label: Texts.source
        text: sheet.term.source
        onEdited: sheet.term.source = source.text
        onAccepted: sheet.saved()
    }

    TextFieldBox {
        id: target

        Layout.fillWidth: true
        objectName: "glossaryEditor.target"
        label: Texts.target
        text: sheet.term.target
        onEdited: sheet.term.target = target.text
        onAccepted: sheet.saved()
    }

    TextFieldBox {
        id: note

        Layout.fillWidth: true
        objectName: "glossaryEditor.note"
        label: Texts.note
        placeholderText: Texts.notePlaceholder
        text: sheet.term.note
        onEdited: sheet.term.note = note.text
        onAccepted: sheet.saved()
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.space

        UiText {
            text: Texts.mode
            color: Theme.textSecondary
            Accessible.ignored: true
        }

        PopUpPicker {
            objectName: "glossaryEditor.mode"
            help: Texts.mode
            model: sheet.modes
            selection: sheet.term.mode
            alignment: Qt.AlignLeft
            onPicked: value => sheet.term.mode = value
        }

        Item {
            Layout.fillWidth: true
        }

        ToggleSwitch {
            objectName: "glossaryEditor.caseSensitive"
            text: Texts.caseSensitive
            checked: sheet.term.caseSensitive
            onToggled: sheet.term.caseSensitive = checked
        }

        ToggleSwitch {
            objectName: "glossaryEditor.isEnabled"
            text: Texts.enable
            checked: sheet.term.isEnabled
            onToggled: sheet.term.isEnabled = checked
        }
    }

    footer: [
        Item {
            Layout.fillWidth: true
        },
        ActionButton {
            objectName: "glossaryEditor.cancel"
            text: Texts.cancel
            onClicked: sheet.close()
        },
        ActionButton {
            objectName: "glossaryEditor.save"
            text: Texts.save
            kind: ActionButton.Kind.Primary
            enabled: sheet.term.isUsable
            onClicked: sheet.saved()
        }
    ]
}
