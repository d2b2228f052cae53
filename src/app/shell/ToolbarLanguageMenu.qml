import Lumaphone.Controls

/// Chooses the language that is spoken.
PopUpPicker {
    property bool isDisabled: false

    objectName: "languageMenu"
    help: "選擇常用原文語言；不確定時用自動辨識"
    enabled: !isDisabled
    implicitWidth: 116
}
