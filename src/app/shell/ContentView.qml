import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Diagnosis
import Lumaphone.Floating
import Lumaphone.Glossary
import Lumaphone.Inspector
import Lumaphone.Library
import Lumaphone.Live
import Lumaphone.Models
import Lumaphone.Texts

/// The root view of the main window: command bar, workspace, inspector, and the sheets over them.
FocusScope {
    id: content

    required property LiveSessionModel session
    required property InspectorModel inspector
    required property ProviderSettingsModel provider
    required property FloatingCaptionWindowController floatingCaptions
    required property TranscriptLibraryWorkspaceModel transcriptLibrary
    required property GlossarySettingsModel glossary
    /// None where nothing can be installed.
    property ModelOffer modelOffer: null
    /// None where the machine cannot be looked at.
    property DiagnosisModel diagnosis: null
    /// None where there is nothing to listen to.
    property SoundTestModel soundTest: null

    property string workspaceMode: "live"
    property bool isInspectorVisible: true
    property alias isProviderSettingsPresented: providerSheet.visible
    property alias isGlossaryPresented: glossarySheet.visible
    property alias isClearConfirmationPresented: clearConfirmation.visible
    readonly property bool isModelSheetPresented: modelRemoval.visible || modelOfferSheet.visible || licenceSheet.visible
    property bool didRequestStartupSystemAudioPermission: false
    readonly property bool isSheetPresented: isProviderSettingsPresented || isGlossaryPresented || isClearConfirmationPresented
        || isModelSheetPresented || diagnosisSheet.visible || unsavedEdit.visible || soundTestSheet.visible
    /// Some Wayland desktops give the keyboard to every window that opens, the panel too.
    readonly property int panelKeys: floatingCaptions.hasKeyboard ? Qt.ApplicationShortcut : Qt.WindowShortcut

    /// The user gives an edit up that cannot be saved.
    signal leaveWanted

    /// Shows what could not be saved, and why, to a user who wanted to leave.
    function tellUnsavedEdit(): void {
        content.workspaceMode = "library";
        unsavedEdit.open();
    }
    /// To be called when the window is shown; asks once.
    function requestStartupPermission(): void {
        if (content.didRequestStartupSystemAudioPermission)
            return;
        content.didRequestStartupSystemAudioPermission = true;
        content.session.requestSystemAudioAccessIfNeeded();
    }
    function clear(): void {
        if (content.session.hasUnsavedTranscript)
            clearConfirmation.open();
        else
            content.session.clearCaptions();
    }

    focus: true

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        LumaphoneCommandBar {
            objectName: "commandBar"
            Layout.fillWidth: true
            session: content.session
            languages: content.inspector.sourceLanguages
            workspaceMode: content.workspaceMode
            isInspectorVisible: content.isInspectorVisible
            isFloatingCaptionOpen: content.floatingCaptions.isOpen
            onWorkspacePicked: workspace => content.workspaceMode = workspace
            onInspectorToggled: content.isInspectorVisible = !content.isInspectorVisible
            onLanguagePicked: language => content.modelOffer?.languageChosen(language)
            onFloatingCaptionToggled: content.floatingCaptions.toggle()
            onFloatingCaptionClosed: content.floatingCaptions.close()
            onSaveTranscript: content.session.saveTranscript()
            onClear: content.clear()
            onStartNew: content.session.startNew()
            onOpenProvider: providerSheet.open()
            onOpenGlossary: glossarySheet.open()
            canDiagnose: content.diagnosis !== null
            onOpenDiagnosis: diagnosisSheet.open()
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            StackLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                currentIndex: content.workspaceMode === "library" ? 1 : 0

                LumaphoneCaptionWorkspace {
                    objectName: "live"
                    session: content.session
                    onSaveTranscript: content.session.saveTranscript()
                    onDiscardTranscript: content.session.clearCaptions()
                    onStartNew: content.session.startNew()
                    hasSoundTest: content.soundTest !== null
                    onSoundTestWanted: soundTestSheet.open()
                }

                TranscriptLibraryWorkspace {
                    workspace: content.transcriptLibrary
                }
            }

            LumaphoneInspectorPanel {
                objectName: "inspectorPanel"
                Layout.fillHeight: true
                visible: content.isInspectorVisible
                inspector: content.inspector
                session: content.session
                modelOffer: content.modelOffer
                onLanguagePicked: language => content.modelOffer?.languageChosen(language)
                onModelRemovalWanted: (row, title, consequences) => {
                    modelRemoval.row = row;
                    modelRemoval.title = Texts.removeModelTitle(title);
                    modelRemoval.message = consequences;
                    modelRemoval.open();
                }
                onModelLicenceWanted: (title, text) => {
                    licenceSheet.title = title;
                    licenceSheet.text = text;
                    licenceSheet.open();
                }
                onOpenProvider: providerSheet.open()
                onOpenGlossary: glossarySheet.open()
                onClear: content.clear()
            }
        }
    }

    ProviderSettingsSheet {
        id: providerSheet

        provider: content.provider
    }

    GlossarySettingsSheet {
        id: glossarySheet

        settings: content.glossary
    }

    ConfirmationAlert {
        id: clearConfirmation

        objectName: "clearConfirmation"
        title: Texts.clearTitle
        message: Texts.clearMessage
        confirmText: Texts.clear
        onConfirmed: content.session.clearCaptions()
    }

    ConfirmationAlert {
        id: unsavedEdit

        objectName: "unsavedEdit"
        title: Texts.unsavedEditTitle
        message: content.transcriptLibrary.errorMessage + "\n\n" + Texts.unsavedEditMessage
        cancelText: Texts.stayInWindow
        confirmText: Texts.giveUpEditAndEnd
        onConfirmed: content.leaveWanted()
    }

    ModelOfferSheet {
        id: modelOfferSheet

        offer: content.modelOffer
    }

    LicenceSheet {
        id: licenceSheet
    }

    SoundTestSheet {
        id: soundTestSheet

        test: content.soundTest
    }

    DiagnosisSheet {
        id: diagnosisSheet

        diagnosis: content.diagnosis
    }

    ConfirmationAlert {
        id: modelRemoval

        property int row: -1

        objectName: "modelRemoval"
        message: ""
        confirmText: Texts.removeIt
        onConfirmed: content.modelOffer.remove(row)
    }

    Announcer {
        id: announcer
    }

    Connections {
        target: content.modelOffer

        function onInstallationEnded(text: string): void {
            announcer.announce(text);
        }
    }

    Connections {
        target: content.session

        function onLineFinished(text: string): void {
            announcer.announce(text);
        }
    }

    Shortcut {
        sequence: "Ctrl+Shift+F"
        context: content.panelKeys
        onActivated: content.floatingCaptions.toggle()
    }

    Shortcut {
        sequence: "Ctrl+S"
        enabled: content.workspaceMode === "live" && content.session.canSave && !content.isSheetPresented
        onActivated: content.session.saveTranscript()
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        context: content.panelKeys
        enabled: !content.isSheetPresented
        onActivated: content.session.startOrStop()
    }

    // Where no control wants the space bar, it starts and stops.
    Keys.onSpacePressed: {
        if (content.workspaceMode === "live")
            content.session.startOrStop();
    }
}
