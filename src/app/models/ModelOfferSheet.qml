pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Models
import Lumaphone.Texts

/// Asks whether to install models, with their sizes and licences, and shows how far that is.
Sheet {
    id: sheet

    /// None where nothing can be installed.
    required property ModelOffer offer
    readonly property var rows: offer?.rows ?? []
    readonly property bool isInstalling: offer?.isInstalling ?? false
    readonly property bool isReady: offer?.isReady ?? false

    objectName: "modelOffer"
    width: 480
    title: sheet.offer?.title ?? ""
    systemImage: "tray.and.arrow.down.fill"
    initialFocus: later

    Connections {
        target: sheet.offer

        function onAsked(): void {
            sheet.open();
        }
    }

    UiText {
        objectName: "modelOffer.message"
        Layout.fillWidth: true
        text: sheet.offer?.message ?? ""
        wrapMode: Text.Wrap
        lineHeight: 1.35
        color: Theme.textSecondary
    }

    Flickable {
        Layout.fillWidth: true
        Layout.fillHeight: true
        implicitHeight: list.implicitHeight
        contentHeight: list.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: AppScrollBar {}

        ColumnLayout {
            id: list

            width: parent.width
            spacing: Theme.gap

            Repeater {
                model: sheet.offer?.models ?? null

                ModelOfferRow {
                    required property int index

                    objectName: "modelOffer." + index
                    Layout.fillWidth: true
                    visible: sheet.rows.includes(index)
                }
            }
        }
    }

    footer: [
        Item {
            Layout.fillWidth: true
        },
        ActionButton {
            id: later

            objectName: "modelOffer.later"
            visible: !sheet.isReady
            text: sheet.isInstalling ? Texts.pauseInstallation : Texts.later
            onClicked: sheet.isInstalling ? sheet.offer.cancel() : sheet.close()
            onDoubleClicked: {} // must not mean what the button says after the first click
        },
        PrimaryButton {
            objectName: "modelOffer.accept"
            text: sheet.isReady ? Texts.done : sheet.isInstalling ? Texts.continueInBackground : sheet.offer?.acceptText ?? ""
            onClicked: sheet.isReady || sheet.isInstalling ? sheet.close() : sheet.offer.accept()
            onDoubleClicked: {}
        }
    ]
}
