import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Inspector

/// Edits the chat-completions endpoint and tries it.
Sheet {
    id: sheet

    required property ProviderSettingsModel provider
    readonly property string status: provider.testStatus

    objectName: "providerSheet"
    title: "自定義 API 提供者"
    subtitle: "Lumaphone 先用 macOS 聽出原文，再把文字交給 API 整理與翻譯。"
    systemImage: "server.rack"
    initialFocus: baseURL.field

    onAboutToShow: provider.open()
    onClosed: provider.close()

    TextFieldBox {
        id: baseURL

        objectName: "provider.baseURL"
        Layout.fillWidth: true
        label: "Base URL"
        text: sheet.provider.baseURL
        placeholderText: sheet.provider.baseURLPlaceholder
        onEdited: sheet.provider.baseURL = text
    }

    TextFieldBox {
        objectName: "provider.model"
        Layout.fillWidth: true
        label: "Model"
        text: sheet.provider.model
        placeholderText: "模型名稱，例如 gpt-4o-mini"
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
                label: "API 金鑰"
                isSecret: true
                text: sheet.provider.apiKey
                placeholderText: sheet.provider.apiKeyPlaceholder
                onEdited: sheet.provider.apiKey = text
            }

            ActionButton {
                objectName: "provider.clearKey"
                Layout.alignment: Qt.AlignBottom
                text: "清除金鑰"
                enabled: sheet.provider.hasProviderAPIKey
                onClicked: sheet.provider.clearKey()
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 6

            Symbol {
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

    // The place of the result is kept, so that nothing moves when it comes.
    Item {
        Layout.fillWidth: true
        implicitHeight: Math.max(notice.visible ? notice.implicitHeight : 0, hint.implicitHeight)

        UiText {
            id: hint

            width: parent.width
            visible: !notice.visible
            text: "API 目前只接收轉錄後的文字，不會直接接收麥克風或系統音訊。API 金鑰只存在 macOS 鑰匙圈，不寫入設定檔，也不會回填顯示。"
            font.pixelSize: Theme.small
            color: Theme.textSoft
            lineHeight: 1.3
            wrapMode: Text.Wrap
        }

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
            text: "測試"
            systemImage: "bolt.horizontal.circle"
            help: "送出一句測試翻譯"
            enabled: !sheet.provider.isTestingProvider
            onClicked: sheet.provider.testProvider()
        },
        Item {
            Layout.fillWidth: true
        },
        ActionButton {
            objectName: "provider.cancel"
            text: "取消"
            onClicked: sheet.close()
        },
        PrimaryButton {
            objectName: "provider.save"
            text: "儲存"
            onClicked: {
                sheet.provider.save();
                sheet.close();
            }
        }
    ]
}
