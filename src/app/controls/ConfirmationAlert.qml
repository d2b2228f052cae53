import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// Asks before something is lost. The safe answer has the keyboard.
Sheet {
    id: alert

    required property string message
    required property string confirmText
    property string cancelText: Texts.cancel

    signal confirmed

    width: 440
    systemImage: "exclamationmark.triangle.fill"
    initialFocus: cancel

    UiText {
        Layout.fillWidth: true
        text: alert.message
        wrapMode: Text.Wrap
        lineHeight: 1.35
        color: Theme.textSecondary
    }

    footer: [
        Item {
            Layout.fillWidth: true
        },
        ActionButton {
            id: cancel

            objectName: alert.objectName + ".cancel"
            text: alert.cancelText
            onClicked: alert.close()
        },
        ActionButton {
            objectName: alert.objectName + ".confirm"
            text: alert.confirmText
            kind: ActionButton.Kind.Destructive
            onClicked: {
                alert.close();
                alert.confirmed();
            }
        }
    ]
}
