import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

/// The newest line, large enough to be read from across a desk. The stage keeps its height whatever is said; the translation is the last
/// thing in it that gives way.
Card {
    id: stage

    required property LiveSessionModel session
    required property int workspaceHeight

    implicitHeight: room.height
    horizontalPadding: room.sideMargin
    verticalPadding: room.margin
    Accessible.role: Accessible.Grouping
    Accessible.name: Texts.currentCaptions

    StageLayout {
        id: room

        workspaceHeight: stage.workspaceHeight
        translationLines: translation.lineCount
        noticeLines: notice.visible ? notice.wantedLines : 0
    }

    Item {
        anchors.fill: parent

        RowLayout {
            objectName: "stage.pills"
            width: parent.width
            visible: room.hasPills
            spacing: Theme.unit

            StatusPill {
                objectName: "stage.source"
                text: stage.session.audioSourceTitle
                systemImage: stage.session.isWithoutSound ? "speaker.slash.fill" : stage.session.audioSourceSymbol
                tone: stage.session.isWithoutSound ? Chip.Tone.Warning : stage.session.isRunning ? Chip.Tone.Success : Chip.Tone.Neutral
            }

            StatusPill {
                objectName: "stage.language"
                text: stage.session.languageStatusText
                systemImage: "character.cursor.ibeam"
            }

            Item {
                Layout.fillWidth: true
            }

            StatusPill {
                objectName: "stage.state"
                text: stage.session.stageStateText
                tone: stage.session.hasFailed ? Chip.Tone.Danger : stage.session.isWithoutSound ? Chip.Tone.Warning
                    : stage.session.isRunning ? Chip.Tone.Accent : Chip.Tone.Neutral
            }
        }

        // Long utterances keep their newest words in view.
        Item {
            objectName: "stage.sourceArea"
            y: room.sourceTop
            width: parent.width
            height: room.sourceHeight
            visible: height > 0
            clip: true

            LanguageText {
                objectName: "stage.sourceText"
                width: parent.width
                y: parent.height - height
                text: stage.session.sourceText
                language: stage.session.stageLanguage
                font.pixelSize: room.sourceSize
                lineHeightMode: Text.FixedHeight
                lineHeight: room.sourceLineHeight
                color: stage.session.stageLanguage === "" || stage.session.isStageFinal ? Theme.textSecondary : Theme.textSoft
            }
        }

        Item {
            objectName: "stage.translationArea"
            y: room.translationTop
            width: parent.width
            height: (notice.visible ? notice.y - Theme.unit : parent.height) - y
            clip: true

            LanguageText {
                id: translation

                objectName: "stage.translationText"
                width: parent.width
                y: Math.min(0, Math.floor(parent.height / lineHeight) * lineHeight - height)
                text: stage.session.translationText
                font.pixelSize: room.translationSize
                font.bold: true
                lineHeightMode: Text.FixedHeight
                lineHeight: room.translationLineHeight
                color: !stage.session.isStageTranslated ? Theme.textSoft : stage.session.isStageFinal ? Theme.text : Theme.textSecondary
            }
        }

        Notice {
            id: notice

            objectName: "stage.notice"
            y: parent.height - height
            width: parent.width
            height: room.noticeHeight
            visible: text !== ""
            maximumLines: room.shownNoticeLines
            text: stage.session.failureMessage !== "" ? stage.session.failureMessage
                : stage.session.isWithoutSound ? stage.session.withoutSoundText : stage.session.isBehind ? stage.session.behindText : ""
            systemImage: stage.session.failureMessage !== "" ? "exclamationmark.triangle.fill"
                : stage.session.isWithoutSound ? "speaker.slash.fill" : "clock"
            tone: stage.session.failureMessage !== "" ? Chip.Tone.Danger
                : stage.session.isWithoutSound ? Chip.Tone.Warning : Chip.Tone.Neutral
        }
    }
}
