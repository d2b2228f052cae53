import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live

/// The live workspace: the newest line, everything heard, and what to do with it.
Item {
    id: workspace

    required property LiveSessionModel session

    signal saveTranscript
    signal discardTranscript
    signal startNew

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.margin
        anchors.bottomMargin: Theme.space
        spacing: Theme.space

        LiveSubtitleStage {
            objectName: "stage"
            Layout.fillWidth: true
            session: workspace.session
            workspaceHeight: workspace.height
        }

        RowLayout {
            Layout.fillWidth: true
            // Not by the pills: what lies in something hidden is never visible itself.
            visible: workspace.session.restoredDraftMessage !== "" || workspace.session.saveErrorMessage !== ""
            spacing: Theme.unit

            StatusPill {
                id: restored

                objectName: "workspace.restored"
                visible: text !== ""
                text: workspace.session.restoredDraftMessage
                systemImage: "arrow.counterclockwise.circle.fill"
                tone: Chip.Tone.Accent
            }

            StatusPill {
                id: saveError

                objectName: "workspace.saveError"
                visible: text !== ""
                maximumWidth: workspace.width - 2 * Theme.margin
                text: workspace.session.saveErrorMessage
                systemImage: "exclamationmark.triangle.fill"
                tone: Chip.Tone.Danger
            }
        }

        SessionReviewActionBar {
            objectName: "reviewBar"
            Layout.fillWidth: true
            visible: workspace.session.isReviewing
            session: workspace.session
            onSaveTranscript: workspace.saveTranscript()
            onDiscardTranscript: workspace.discardTranscript()
            onStartNew: workspace.startNew()
        }

        SessionTranscriptCard {
            Layout.fillWidth: true
            Layout.fillHeight: true
            session: workspace.session
        }

        LiveAudioStatusBar {
            Layout.fillWidth: true
            session: workspace.session
        }
    }
}
