import QtQuick
import QtQuick.Controls.Basic
import Lumaphone.Controls
import Lumaphone.Diagnosis
import Lumaphone.Floating
import Lumaphone.Glossary
import Lumaphone.Inspector
import Lumaphone.Library
import Lumaphone.Live
import Lumaphone.Models
import Lumaphone.Shell
import Lumaphone.Texts
import Lumaphone.Welcome

/// The main window.
ApplicationWindow {
    id: window

    required property LiveSessionModel session
    required property InspectorModel inspector
    required property ProviderSettingsModel provider
    required property FloatingCaptionWindowController floatingCaptions
    required property TranscriptLibraryWorkspaceModel transcriptLibrary
    required property GlossarySettingsModel glossary
    property ModelOffer modelOffer: null
    property DiagnosisModel diagnosis: null
    property WelcomeModel welcome: null
    property SoundTestModel soundTest: null
    /// Whether the desktop wants dark colours.
    property bool isDark: false
    /// The desktop's accent colour; transparent where it has none.
    property color desktopAccent: "transparent"
    property bool isHighContrast: false
    property bool isMotionReduced: false
    readonly property alias content: view

    width: 1280
    height: 800
    minimumWidth: 1040
    minimumHeight: 680
    title: Texts.appName
    color: Theme.window
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body

    Binding {
        target: Theme
        property: "isDark"
        value: window.isDark
    }

    Binding {
        target: Theme
        property: "desktopAccent"
        value: window.desktopAccent
    }

    Binding {
        target: Theme
        property: "isHighContrast"
        value: window.isHighContrast
    }

    Binding {
        target: Theme
        property: "isMotionReduced"
        value: window.isMotionReduced
    }

    ContentView {
        id: view

        anchors.fill: parent
        session: window.session
        inspector: window.inspector
        provider: window.provider
        floatingCaptions: window.floatingCaptions
        transcriptLibrary: window.transcriptLibrary
        glossary: window.glossary
        modelOffer: window.modelOffer
        diagnosis: window.diagnosis
        welcome: window.welcome
        soundTest: window.soundTest
        onLeaveWanted: window.leave()
        onCloseWanted: window.close()
    }

    // Models and terms may have come or gone in a terminal.
    onActiveChanged: {
        if (active) {
            window.modelOffer?.refresh();
            window.glossary?.refresh();
        }
    }

    onVisibleChanged: {
        if (visible) {
            view.requestStartupPermission();
            view.welcomeNewUser();
        }
    }

    /// A running session ends and leaves its draft; the program ends when the last translations have come, or a moment later.
    function leave(): void {
        window.hide();
        window.floatingCaptions.close();
        window.session.endSession();
    }

    Connections {
        target: window.session

        function onEnded(): void {
            Qt.quit();
        }
    }

    // What was edited is saved, or the window stays.
    onClosing: close => {
        if (window.transcriptLibrary.finishEditing()) {
            window.leave();
        } else {
            close.accepted = false;
            view.tellUnsavedEdit();
        }
    }
}
