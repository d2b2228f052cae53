import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live

/// The live workspace: the newest line, everything heard, and what to do with it.
Item {
    id: workspace

    required property LiveSessionModel session
    /// Whether the sound can be tested on this machine.
    property bool hasSoundTest: false

    signal saveTranscript
    signal discardTranscript
    signal startNew
    signal soundTestWanted

    /// Scrolls the transcript, if the command of the KeyTable does that.
    function scroll(command: string): bool {
        return card.scroll(command);
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.margin
        anchors.bottomMargin: Theme.gap
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
            Layout.preferredHeight: Theme.margin
            session: workspace.session
            canTestSound: workspace.hasSoundTest && !workspace.session.isRunning && !workspace.session.isStarting
            onSoundTestWanted: workspace.soundTestWanted()
        }
    }
}
