import Lumaphone.Controls
import Lumaphone.Texts

/// Chooses the language that is spoken.
PopUpPicker {
    property bool isDisabled: false

    objectName: "languageMenu"
    help: Texts.languageHelp
    enabled: !isDisabled
    implicitWidth: 116
}
