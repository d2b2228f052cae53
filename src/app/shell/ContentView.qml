import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Diagnosis
import Lumaphone.Floating
import Lumaphone.Glossary
import Lumaphone.Inspector
import Lumaphone.Keys
import Lumaphone.Library
import Lumaphone.Live
import Lumaphone.Models
import Lumaphone.Texts
import Lumaphone.Welcome

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
    /// None where nobody is welcomed.
    property WelcomeModel welcome: null
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
        || isModelSheetPresented || diagnosisSheet.visible || keyList.visible || unsavedEdit.visible || welcomeSheet.visible || soundTestSheet.visible
    /// Some Wayland desktops give the keyboard to every window that opens, the panel too.
    readonly property int panelKeys: floatingCaptions.hasKeyboard ? Qt.ApplicationShortcut : Qt.WindowShortcut
    readonly property bool isLive: workspaceMode === "live" && !isSheetPresented

    /// The user gives an edit up that cannot be saved.
    signal leaveWanted
    /// The window shall close as by its own button.
    signal closeWanted

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
    /// To be called when the window is shown: a new user is told what there is.
    function welcomeNewUser(): void {
        if (content.welcome?.isWanted)
            welcomeSheet.open();
    }
    /// Gives the keyboard to the first of the settings.
    function openSettings(): void {
        content.isInspectorVisible = true;
        inspectorPanel.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
    }
    /// A key that no control has wanted. The space bar is not even meant for those that let it pass.
    function obey(key: int, modifiers: int, isAutoRepeat: bool): bool {
        if (KeyTable.commandOf("session", key, modifiers) !== "startOrStopFreely")
            return live.scroll(KeyTable.commandOf("transcript", key, modifiers));
        if (rest.activeFocus && !isAutoRepeat)
            content.session.startOrStop();
        return rest.activeFocus;
    }
    function clear(): void {
        if (content.session.hasUnsavedTranscript)
            clearConfirmation.open();
        else
            content.session.clearCaptions();
    }

    focus: true

    /// Has the keyboard while no control has it.
    Item {
        id: rest

        objectName: "rest"
        focus: true
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        LumaphoneCommandBar {
            objectName: "commandBar"
            Layout.fillWidth: true
            session: content.session
            languages: content.inspector.commandBarLanguages
            workspaceMode: content.workspaceMode
            isInspectorVisible: content.isInspectorVisible
            isFloatingCaptionOpen: content.floatingCaptions.isOpen
            canHoldFloatingCaption: content.floatingCaptions.isOpen && content.floatingCaptions.reader.isOn
            isFloatingCaptionHeld: content.floatingCaptions.reader.isHeld
            onWorkspacePicked: workspace => content.workspaceMode = workspace
            onInspectorToggled: content.isInspectorVisible = !content.isInspectorVisible
            onLanguagePicked: language => content.modelOffer?.languageChosen(language)
            onFloatingCaptionToggled: content.floatingCaptions.toggle()
            onFloatingCaptionHeld: content.floatingCaptions.reader.toggleHold()
            onFloatingCaptionClosed: content.floatingCaptions.close()
            onSaveTranscript: content.session.saveTranscript()
            onClear: content.clear()
            onStartNew: content.session.startNew()
            onOpenProvider: providerSheet.open()
            onOpenGlossary: glossarySheet.open()
            canDiagnose: content.diagnosis !== null
            onOpenDiagnosis: diagnosisSheet.open()
            onOpenKeys: keyList.open()
            onOpenWelcome: welcomeSheet.open()
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
                    id: live

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
                id: inspectorPanel

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

    KeyListSheet {
        id: keyList
    }

    WelcomeSheet {
        id: welcomeSheet

        welcome: content.welcome
        inspector: content.inspector
        offer: content.modelOffer
        isLocked: content.session.isRunning || content.session.isStarting
    }

    ConfirmationAlert {
        id: modelRemoval

        property int row: -1

        objectName: "modelRemoval"
        message: ""
        confirmText: Texts.removeIt
        onConfirmed: content.modelOffer.remove(row)
    }

    Binding {
        target: content.floatingCaptions
        property: "dialogs"
        value: OpenDialogs.areas(content.Window.window?.x ?? 0, content.Window.window?.y ?? 0)
    }

    // Over the workspace, so that nothing moves when it comes or goes.
    MessageBanner {
        id: installationNotice

        objectName: "installationNotice"
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottomMargin: Theme.margin
        width: Math.min(520, parent.width - 2 * Theme.margin)
        visible: text !== ""
        tone: MessageBanner.Tone.Neutral
        border.width: 1
        border.color: Theme.fieldBorder
        onDismissed: text = ""

        Timer {
            interval: 12000
            running: installationNotice.visible
            onTriggered: installationNotice.text = ""
        }
    }

    Announcer {
        id: announcer
    }

    Connections {
        target: content.modelOffer

        function onInstallationEnded(text: string): void {
            announcer.announce(text);
            installationNotice.text = text;
        }
    }

    Connections {
        target: content.session

        function onAnnounced(text: string): void {
            announcer.announce(text);
        }
    }

    CommandShortcut {
        command: "toggleFloatingCaptions"
        context: content.panelKeys
        onActivated: content.floatingCaptions.toggle()
    }

    CommandShortcut {
        command: "holdFloatingCaptions"
        context: content.panelKeys
        enabled: content.floatingCaptions.isOpen && content.floatingCaptions.reader.isOn
        onActivated: content.floatingCaptions.reader.toggleHold()
    }

    CommandShortcut {
        command: "save"
        enabled: content.isLive && content.session.canSave
        onActivated: content.session.saveTranscript()
    }

    CommandShortcut {
        command: "startOrStop"
        context: content.panelKeys
        enabled: !content.isSheetPresented
        onActivated: content.session.startOrStop()
    }

    CommandShortcut {
        command: "openSettings"
        enabled: !content.isSheetPresented
        onActivated: content.openSettings()
    }

    CommandShortcut {
        command: "openKeys"
        enabled: !content.isSheetPresented
        onActivated: keyList.open()
    }

    CommandShortcut {
        command: "close"
        enabled: !content.isSheetPresented
        onActivated: content.closeWanted()
    }

    Keys.onPressed: event => event.accepted = content.isLive && content.obey(event.key, event.modifiers, event.isAutoRepeat)
    // The control with the keyboard gives it up.
    Keys.onEscapePressed: rest.forceActiveFocus()
}
