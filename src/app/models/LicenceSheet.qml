import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// The terms of a model, to be read.
Sheet {
    id: sheet

    property string text

    objectName: "modelLicence"
    width: 600
    subtitle: Texts.licence
    systemImage: "text.book.closed"
    initialFocus: area.flickable
    onClosed: area.rewind()

    ScrollArea {
        id: area

        name: "modelLicence"
        title: sheet.title
        Layout.fillWidth: true
        Layout.fillHeight: true

        UiText {
            objectName: "modelLicence.text"
            width: parent.width
            text: sheet.text
            font.pixelSize: Theme.small
            color: Theme.textSecondary
            lineHeight: 1.3
            wrapMode: Text.Wrap
        }
    }

    footer: [
        Item {
            Layout.fillWidth: true
        },
        PrimaryButton {
            objectName: "modelLicence.close"
            text: Texts.close
            onClicked: sheet.close()
        }
    ]
}
