import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

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
    Accessible.name: Texts.theseCaptions

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
            text: bar.session.isSaved ? Texts.savedAs(bar.session.savedTitle) : Texts.notSavedYet
            elide: Text.ElideRight
        }

        ActionButton {
            objectName: "review.discard"
            text: bar.session.isSaved ? Texts.clear : Texts.discard
            systemImage: "trash"
            help: bar.session.isSaved ? Texts.clearSavedHelp : Texts.discardHelp
            kind: bar.session.isSaved ? ActionButton.Kind.Plain : ActionButton.Kind.Destructive
            onClicked: bar.discardTranscript()
        }

        ActionButton {
            objectName: "review.startNew"
            text: Texts.startNewCaptions
            systemImage: "arrow.triangle.2.circlepath"
            help: bar.session.newCaptionsHelp
            onClicked: bar.startNew()
        }

        PrimaryButton {
            objectName: "review.save"
            text: bar.session.isSaved ? Texts.updateRecord : Texts.save
            systemImage: bar.session.isSaved ? "tray.and.arrow.down" : "tray.and.arrow.down.fill"
            help: bar.session.saveHelp
            onClicked: bar.saveTranscript()
        }
    }
}
