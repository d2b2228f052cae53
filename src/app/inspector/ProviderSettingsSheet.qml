import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Inspector
import Lumaphone.Texts

/// Edits the chat-completions endpoint and tries it.
Sheet {
    id: sheet

    required property ProviderSettingsModel provider
    readonly property string status: provider.testStatus

    objectName: "providerSheet"
    title: Texts.providerTitle
    subtitle: Texts.providerSubtitle
    systemImage: "server.rack"
    initialFocus: baseURL.field

    onAboutToShow: provider.open()
    onClosed: provider.close()

    TextFieldBox {
        id: baseURL

        objectName: "provider.baseURL"
        Layout.fillWidth: true
        label: Texts.providerBaseURL
        text: sheet.provider.baseURL
        placeholderText: sheet.provider.baseURLPlaceholder
        onEdited: sheet.provider.baseURL = text
    }

    TextFieldBox {
        objectName: "provider.model"
        Layout.fillWidth: true
        label: Texts.providerModel
        text: sheet.provider.model
        placeholderText: Texts.providerModelPlaceholder
        onEdited: sheet.provider.model = text
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.unit

            TextFieldBox {
                objectName: "provider.apiKey"
                Layout.fillWidth: true
                label: Texts.providerKey
                isSecret: true
                text: sheet.provider.apiKey
                placeholderText: sheet.provider.apiKeyPlaceholder
                onEdited: sheet.provider.apiKey = text
            }

            ActionButton {
                objectName: "provider.clearKey"
                Layout.alignment: Qt.AlignBottom
                text: Texts.clearProviderKey
                enabled: sheet.provider.mayClearKey
                onClicked: sheet.provider.clearKey()
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 6

            Symbol {
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: 2
                name: "key.fill"
                size: 14
                color: Theme.textSoft
            }

            UiText {
                objectName: "provider.keyStatus"
                Layout.fillWidth: true
                text: sheet.provider.apiKeyStatusText
                font.pixelSize: Theme.small
                color: Theme.textSecondary
                wrapMode: Text.Wrap
            }
        }
    }

    UiText {
        Layout.fillWidth: true
        objectName: "provider.hint"
        text: Texts.providerHint
        font.pixelSize: Theme.small
        color: Theme.textSoft
        lineHeight: 1.3
        wrapMode: Text.Wrap
    }

    // The place of the result is kept, so that nothing moves when it comes.
    Item {
        Layout.fillWidth: true
        implicitHeight: Math.max(notice.implicitHeight, Theme.controlHeight)

        Notice {
            id: notice

            objectName: "provider.testStatus"
            width: parent.width
            visible: sheet.status !== "none"
            text: sheet.provider.testStatusText
            systemImage: sheet.status === "success" ? "checkmark.circle.fill"
                : sheet.status === "failure" ? "exclamationmark.triangle.fill" : "bolt.horizontal.circle"
            tone: sheet.status === "success" ? Chip.Tone.Success
                : sheet.status === "failure" ? Chip.Tone.Danger : Chip.Tone.Neutral
        }
    }

    footer: [
        ActionButton {
            objectName: "provider.test"
            text: Texts.testProvider
            systemImage: "bolt.horizontal.circle"
            help: Texts.testProviderHelp
            enabled: !sheet.provider.isTestingProvider
            onClicked: sheet.provider.testProvider()
        },
        Item {
            Layout.fillWidth: true
        },
        ActionButton {
            objectName: "provider.cancel"
            text: Texts.cancel
            onClicked: sheet.close()
        },
        PrimaryButton {
            objectName: "provider.save"
            text: Texts.save
            onClicked: {
                sheet.provider.save();
                sheet.close();
            }
        }
    ]
}
