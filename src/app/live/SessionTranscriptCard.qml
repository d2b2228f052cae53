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

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin
            Layout.rightMargin: Theme.space
            Layout.preferredHeight: 52
            visible: !card.isFinding
            spacing: 6

            UiText {
                Layout.fillWidth: true
                text: Texts.justHeard
                font.pixelSize: Theme.title
                font.bold: true
                Accessible.role: Accessible.Heading
            }

            Symbol {
                objectName: "card.statusSymbol"
                visible: card.lines.count > 0 && !card.lines.hasPendingTranslation
                name: card.lines.failedCount > 0 ? "exclamationmark.circle.fill" : "checkmark.circle.fill"
                color: card.lines.failedCount > 0 ? Theme.warning : Theme.success
                size: 16
            }

            UiText {
                objectName: "card.status"
                visible: card.lines.count > 0
                text: card.session.cardStatusText
                color: Theme.textSecondary
                font.pixelSize: Theme.small
            }

            ActionButton {
                objectName: "card.translateAgain"
                Layout.leftMargin: Theme.half
                visible: card.lines.failedCount > 0
                isCompact: true
                systemImage: "arrow.triangle.2.circlepath"
                text: Texts.translateAllAgain
                help: Texts.translateAllAgainHelp
                onClicked: card.session.translateAgain()
            }

            ToolbarIconButton {
                objectName: "card.find"
                visible: card.lines.count > 0
                systemImage: "magnifyingglass"
                help: Texts.findHelp
                onClicked: card.find()
            }
        }

        Hairline {
            Layout.fillWidth: true
        }

        Item {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin
            implicitHeight: 40

            TranscriptPane {
                objectName: "card.source"
                anchors.verticalCenter: parent.verticalCenter
                width: card.columnWidth
                title: Texts.source
                isCopyable: card.lines.count > 0
                onCopied: card.session.copyText(card.session.joinedSourceText())
            }

            TranscriptPane {
                objectName: "card.translation"
                anchors.verticalCenter: parent.verticalCenter
                x: card.columnWidth + Theme.margin
                width: card.columnWidth
                title: Texts.taiwanChinese
                isPrimary: true
                description: card.lines.count > 0 && !card.lines.hasTranslatedText ? Texts.translationsComing : ""
                isCopyable: card.lines.count > 0 && card.lines.hasTranslatedText
                onCopied: card.session.copyText(card.session.joinedTranslatedText())
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            TranscriptListView {
                id: list

                objectName: "card.lines"
                anchors.fill: parent
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
                anchors.top: parent.top
                anchors.bottom: parent.bottom
                visible: card.lines.count > 0
            }

            UiText {
                anchors.centerIn: parent
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
