pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Keys
import Lumaphone.Live
import Lumaphone.Texts

/// Everything heard in the session so far.
Card {
    id: card

    required property LiveSessionModel session
    readonly property CaptionLinesModel lines: session.lines
    property bool isFinding: false
    /// Of each side; the rows and their heads lie in the same two columns.
    readonly property real columnWidth: Math.floor((width - 2 * Theme.margin - Theme.margin) / 2)

    function scroll(command: string): bool {
        return list.scroll(command);
    }
    function find(): void {
        card.isFinding = true;
        findBar.begin(list.topRow());
    }
    function leaveFinding(): void {
        card.isFinding = false;
        card.session.transcript.search("", 0);
        list.forceActiveFocus();
    }

    padding: 0
    Accessible.role: Accessible.Grouping
    Accessible.name: Texts.justHeard

    CommandShortcut {
        command: "find"
        enabled: card.visible && card.lines.count > 0
        onActivated: card.find()
    }

    CommandShortcut {
        command: "findNext"
        enabled: card.visible && card.isFinding
        autoRepeat: true
        onActivated: findBar.step(1)
    }

    CommandShortcut {
        command: "findPrevious"
        enabled: card.visible && card.isFinding
        autoRepeat: true
        onActivated: findBar.step(-1)
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        FindBar {
            id: findBar

            Layout.fillWidth: true
            Layout.leftMargin: Theme.space
            Layout.rightMargin: Theme.space
            Layout.preferredHeight: 52
            visible: card.isFinding
            transcript: card.session.transcript
            onFound: row => list.reveal(row)
            onClosed: card.leaveFinding()
        }

        // Not a layout: one whose parts come and go while the session runs left them lying where they were.
        Item {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin
            Layout.rightMargin: Theme.space
            Layout.preferredHeight: 52
            visible: !card.isFinding

            UiText {
                id: heading

                anchors.verticalCenter: parent.verticalCenter
                text: Texts.justHeard
                font.pixelSize: Theme.title
                font.bold: true
                Accessible.role: Accessible.Heading
            }

            StatusPill {
                objectName: "workspace.saveError"
                anchors.right: state.left
                anchors.rightMargin: state.spacing
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                // What the row leaves, whatever it says.
                maximumWidth: state.x - heading.width - 2 * state.spacing
                text: card.session.saveErrorMessage
                systemImage: "exclamationmark.triangle.fill"
                tone: Chip.Tone.Danger
            }

            Row {
                id: state

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 6

                StatusPill {
                    objectName: "workspace.restored"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: text !== ""
                    text: card.session.restoredDraftMessage
                    systemImage: "arrow.counterclockwise.circle.fill"
                    tone: Chip.Tone.Accent
                }

                StatusPill {
                    objectName: "card.status"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: card.lines.count > 0
                    text: card.session.cardStatusText
                    systemImage: card.lines.hasPendingTranslation ? "" : card.lines.failedCount > 0 ? "exclamationmark.circle.fill" : "checkmark.circle.fill"
                    tone: card.lines.hasPendingTranslation ? Chip.Tone.Neutral : card.lines.failedCount > 0 ? Chip.Tone.Warning : Chip.Tone.Success
                }

                ActionButton {
                    objectName: "card.translateAgain"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: card.lines.failedCount > 0
                    isCompact: true
                    systemImage: "arrow.triangle.2.circlepath"
                    text: Texts.translateAllAgain
                    help: Texts.translateAllAgainHelp
                    onClicked: card.session.translateAgain()
                }

                ToolbarIconButton {
                    objectName: "card.find"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: card.lines.count > 0
                    systemImage: "magnifyingglass"
                    help: Texts.findHelp
                    onClicked: card.find()
                }
            }
        }

        Hairline {
            Layout.fillWidth: true
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            TranscriptPane {
                id: sourcePane

                objectName: "card.source"
                x: Theme.margin
                width: card.columnWidth
                height: parent.height
                title: Texts.source
                text: card.session.joinedSourceText
            }

            TranscriptPane {
                objectName: "card.translation"
                x: 2 * Theme.margin + card.columnWidth
                width: card.columnWidth
                height: parent.height
                title: Texts.taiwanChinese
                text: card.session.joinedTranslatedText
                isPrimary: true
                description: card.lines.count > 0 ? Texts.translationsComing : ""
            }

            TranscriptListView {
                id: list

                objectName: "card.lines"
                anchors.fill: parent
                anchors.topMargin: sourcePane.headHeight
                anchors.leftMargin: Theme.margin
                anchors.rightMargin: Theme.half
                topMargin: Theme.half
                bottomMargin: Theme.half
                transcript: card.session.transcript
                onFindWanted: card.find()
                delegate: CaptionLineRow {
                    id: line

                    isCurrent: list.activeFocus && list.transcript.currentRow === line.index
                    onTranslateAgain: card.session.translateLineAgain(line.index)
                }
                Accessible.role: Accessible.List
                Accessible.name: Texts.justHeard
            }

            FocusRing {
                isShown: list.activeFocus
                gap: -4
            }

            Hairline {
                x: Theme.margin + card.columnWidth + Theme.gap
                anchors.top: list.top
                anchors.bottom: list.bottom
                visible: card.lines.count > 0
            }

            UiText {
                anchors.centerIn: list
                visible: card.lines.count === 0
                text: card.session.isRunning ? Texts.firstLineComing : Texts.linesWillStay
                color: Theme.textSoft
            }

            ActionButton {
                objectName: "card.toNewest"
                anchors.horizontalCenter: parent.horizontalCenter
                anchors.bottom: parent.bottom
                anchors.bottomMargin: Theme.gap
                visible: !list.isFollowing && card.lines.count > 0
                isCompact: true
                systemImage: "arrow.down"
                text: Texts.toNewestLine
                onClicked: list.follow()
            }
        }
    }
}
