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

    /// Scrolls the transcript, if the command of the KeyTable does that.
    function scroll(command: string): bool {
        return card.scroll(command);
    }

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
            id: card

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
