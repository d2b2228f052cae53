import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Glossary

/// Edits one term of the glossary. `saved` asks to put it into the glossary.
Sheet {
    id: sheet

    required property GlossaryTermEditor term
    required property var modes

    signal saved

    objectName: "glossaryEditor"
    width: 480
    title: "編輯術語"
    subtitle: "調整固定譯法後，下一次翻譯就會套用。"
    systemImage: "pencil"
    initialFocus: source

    TextFieldBox {
        id: source

        Layout.fillWidth: true
        objectName: "glossaryEditor.source"
        label: "原文"
        text: sheet.term.source
        onEdited: sheet.term.source = source.text
        onAccepted: sheet.saved()
    }

    TextFieldBox {
        id: target

        Layout.fillWidth: true
        objectName: "glossaryEditor.target"
        label: "譯文"
        text: sheet.term.target
        onEdited: sheet.term.target = target.text
        onAccepted: sheet.saved()
    }

    TextFieldBox {
        id: note

        Layout.fillWidth: true
        objectName: "glossaryEditor.note"
        label: "備註"
        placeholderText: "備註，可留空"
        text: sheet.term.note
        onEdited: sheet.term.note = note.text
        onAccepted: sheet.saved()
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.space

        UiText {
            text: "模式"
            color: Theme.textSecondary
            Accessible.ignored: true
        }

        PopUpPicker {
            objectName: "glossaryEditor.mode"
            help: "模式"
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
            text: "大小寫敏感"
            checked: sheet.term.caseSensitive
            onToggled: sheet.term.caseSensitive = checked
        }

        ToggleSwitch {
            objectName: "glossaryEditor.isEnabled"
            text: "啟用"
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
            text: "取消"
            onClicked: sheet.close()
        },
        ActionButton {
            objectName: "glossaryEditor.save"
            text: "儲存"
            kind: ActionButton.Kind.Primary
            enabled: sheet.term.isUsable
            onClicked: sheet.saved()
        }
    ]
}
