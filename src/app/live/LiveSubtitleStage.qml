import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

/// The newest line, large enough to be read from across a desk. The stage keeps its height whatever is said.
Card {
    id: stage

    required property LiveSessionModel session
    property bool isCompact: false

    implicitHeight: isCompact ? 228 : 300
    padding: isCompact ? Theme.margin : Theme.wide
    Accessible.role: Accessible.Grouping
    Accessible.name: Texts.currentCaptions

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
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
            Layout.fillWidth: true
            Layout.topMargin: stage.isCompact ? Theme.space : Theme.margin
            implicitHeight: sourceText.lineHeight * 2
            clip: true

            LanguageText {
                id: sourceText

                objectName: "stage.sourceText"
                width: parent.width
                y: Math.min(parent.height - height, 0) + (height < parent.height ? parent.height - height : 0)
                text: stage.session.sourceText
                language: stage.session.stageLanguage
                font.pixelSize: stage.isCompact ? 18 : Theme.stageSource
                lineHeightMode: Text.FixedHeight
                lineHeight: stage.isCompact ? 26 : 30
                color: stage.session.stageLanguage === "" || stage.session.isStageFinal ? Theme.textSecondary : Theme.textSoft
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.topMargin: Theme.half
            clip: true

            LanguageText {
                id: translation

                objectName: "stage.translationText"
                width: parent.width
                y: Math.min(0, Math.floor(parent.height / lineHeight) * lineHeight - height)
                text: stage.session.translationText
                font.pixelSize: stage.isCompact ? 32 : Theme.hero
                font.bold: true
                lineHeightMode: Text.FixedHeight
                lineHeight: stage.isCompact ? 42 : 52
                color: !stage.session.isStageTranslated ? Theme.textSoft : stage.session.isStageFinal ? Theme.text : Theme.textSecondary
            }
        }

        Notice {
            Layout.fillWidth: true
            objectName: "stage.notice"
            visible: text !== ""
            text: stage.session.failureMessage !== "" ? stage.session.failureMessage
                : stage.session.isWithoutSound ? stage.session.withoutSoundText : stage.session.isBehind ? stage.session.behindText : ""
            systemImage: stage.session.failureMessage !== "" ? "exclamationmark.triangle.fill"
                : stage.session.isWithoutSound ? "speaker.slash.fill" : "clock"
            tone: stage.session.failureMessage !== "" ? Chip.Tone.Danger
                : stage.session.isWithoutSound ? Chip.Tone.Warning : Chip.Tone.Neutral
        }
    }
}
