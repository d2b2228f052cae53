import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live

/// What can be done with a session that has ended.
Card {
    id: bar

    required property LiveSessionModel session

    signal saveTranscript
    signal discardTranscript
    signal startNew

    horizontalPadding: Theme.margin
    verticalPadding: Theme.gap
    Accessible.role: Accessible.Grouping
    Accessible.name: "這段字幕"

    RowLayout {
        anchors.fill: parent
        spacing: Theme.unit

        Symbol {
            visible: bar.session.isSaved
            name: "checkmark.seal.fill"
            color: Theme.success
            size: 20
        }

        UiText {
            objectName: "review.summary"
            Layout.fillWidth: true
            text: bar.session.isSaved ? "已儲存：" + bar.session.savedTitle : "這段字幕還沒儲存。"
            elide: Text.ElideRight
        }

        ActionButton {
            objectName: "review.discard"
            text: bar.session.isSaved ? "清除" : "捨棄"
            systemImage: "trash"
            help: bar.session.isSaved ? "從畫面上清除這段字幕，紀錄庫裡的不會變" : "丟掉這段字幕，不儲存"
            kind: bar.session.isSaved ? ActionButton.Kind.Plain : ActionButton.Kind.Destructive
            onClicked: bar.discardTranscript()
        }

        ActionButton {
            objectName: "review.startNew"
            text: "開始新的字幕"
            systemImage: "arrow.triangle.2.circlepath"
            help: bar.session.newCaptionsHelp
            onClicked: bar.startNew()
        }

        PrimaryButton {
            objectName: "review.save"
            text: bar.session.isSaved ? "更新紀錄" : "儲存"
            systemImage: bar.session.isSaved ? "tray.and.arrow.down" : "tray.and.arrow.down.fill"
            help: bar.session.saveHelp
            onClicked: bar.saveTranscript()
        }
    }
}
