import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Keys
import Lumaphone.Live
import Lumaphone.Texts

/// The bar across the top of the window.
Rectangle {
    id: bar

    required property LiveSessionModel session
    required property var languages
    required property string workspaceMode
    required property bool isInspectorVisible
    required property bool isFloatingCaptionOpen
    property bool canHoldFloatingCaption: false
    property bool isFloatingCaptionHeld: false
    /// Whether the machine can be looked at.
    property bool canDiagnose: false

    signal workspacePicked(workspace: string)
    signal inspectorToggled
    signal languagePicked(language: string)
    signal floatingCaptionToggled
    signal floatingCaptionClosed
    signal floatingCaptionHeld
    signal saveTranscript
    signal clear
    signal startNew
    signal openProvider
    signal openGlossary
    signal openWelcome
    signal openDiagnosis
    signal openKeys

    implicitHeight: 56
    color: Theme.surface
    Accessible.role: Accessible.ToolBar
    Accessible.name: Texts.toolbar

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.space
        anchors.rightMargin: Theme.space
        spacing: Theme.unit

        AppIconBadge {}

        UiText {
            Layout.leftMargin: Theme.half
            Layout.fillWidth: true
            text: Texts.slogan
            color: Theme.textSecondary
            elide: Text.ElideRight
        }

        ToolbarWorkspaceSwitcher {
            selection: bar.workspaceMode
            onPicked: workspace => bar.workspacePicked(workspace)
        }

        Hairline {
            Layout.leftMargin: Theme.half
            Layout.rightMargin: Theme.half
            implicitHeight: Theme.margin
        }

        ToolbarLanguageMenu {
            model: bar.languages
            selection: bar.session.sourceLanguage
            isDisabled: bar.session.isRunning || bar.session.isStarting
            onPicked: value => {
                bar.session.setSourceLanguage(value);
                bar.languagePicked(value);
            }
        }

        PrimaryButton {
            objectName: "startStop"
            implicitWidth: 96
            text: bar.session.startStopText
            systemImage: bar.session.startStopSymbol
            help: bar.session.isRunning || bar.session.isStarting ? Texts.stopHelp : Texts.startHelp
            onClicked: bar.session.startOrStop()
        }

        Hairline {
            Layout.leftMargin: Theme.half
            Layout.rightMargin: Theme.half
            implicitHeight: Theme.margin
        }

        ToolbarIconButton {
            objectName: "save"
            systemImage: "tray.and.arrow.down"
            help: bar.session.saveHelp
            isDisabled: !bar.session.canSave
            onClicked: bar.saveTranscript()
        }

        ToolbarIconButton {
            objectName: "newCaptions"
            systemImage: "arrow.triangle.2.circlepath"
            help: bar.session.newCaptionsHelp
            isDisabled: !bar.session.canStartNew
            onClicked: bar.startNew()
        }

        ToolbarIconButton {
            objectName: "clear"
            systemImage: "trash"
            help: Texts.clearCaptions
            isDisabled: !bar.session.canClear
            onClicked: bar.clear()
        }

        ToolbarIconButton {
            objectName: "floatingCaptions"
            systemImage: "captions.bubble"
            help: Texts.toggleFloatingCaptions
            isToggle: true
            isSelected: bar.isFloatingCaptionOpen
            onClicked: bar.floatingCaptionToggled()
        }

        ToolbarIconButton {
            objectName: "inspector"
            systemImage: "sidebar.right"
            help: bar.isInspectorVisible ? Texts.hideInspector : Texts.showInspector
            isToggle: true
            isSelected: bar.isInspectorVisible
            onClicked: bar.inspectorToggled()
        }

        MenuButton {
            objectName: "moreSettings"
            systemImage: "ellipsis"
            help: Texts.moreSettings

            AppMenu {
                AppMenuItem {
                    objectName: "menu.provider"
                    systemImage: "server.rack"
                    text: Texts.menuProvider
                    onTriggered: bar.openProvider()
                }

                AppMenuItem {
                    objectName: "menu.glossary"
                    systemImage: "text.book.closed"
                    text: Texts.menuGlossary
                    onTriggered: bar.openGlossary()
                }

                AppMenuSeparator {}

                AppMenuHeading {
                    text: Texts.menuCaptions
                }

                AppMenuItem {
                    objectName: "menu.openFloating"
                    systemImage: "captions.bubble"
                    text: Texts.openFloatingCaptions
                    keys: KeyTable.labelOf("toggleFloatingCaptions")
                    onTriggered: bar.floatingCaptionToggled()
                }

                AppMenuItem {
                    objectName: "menu.closeFloating"
                    systemImage: "xmark"
                    text: Texts.closeFloatingCaptions
                    enabled: bar.isFloatingCaptionOpen
                    onTriggered: bar.floatingCaptionClosed()
                }

                AppMenuItem {
                    objectName: "menu.holdFloating"
                    systemImage: bar.isFloatingCaptionHeld ? "play.fill" : "pause.fill"
                    text: bar.isFloatingCaptionHeld ? Texts.followCaptions : Texts.holdCaptions
                    keys: KeyTable.labelOf("holdFloatingCaptions")
                    enabled: bar.canHoldFloatingCaption
                    onTriggered: bar.floatingCaptionHeld()
                }

                AppMenuSeparator {}

                AppMenuItem {
                    objectName: "menu.welcome"
                    systemImage: "captions.bubble.fill"
                    text: Texts.menuWelcome
                    onTriggered: bar.openWelcome()
                }

                AppMenuItem {
                    objectName: "menu.diagnosis"
                    systemImage: "checkmark.seal.fill"
                    text: Texts.menuDiagnosis
                    enabled: bar.canDiagnose
                    onTriggered: bar.openDiagnosis()
                }

                AppMenuItem {
                    objectName: "menu.keys"
                    systemImage: "keyboard"
                    text: Texts.menuKeys
                    keys: KeyTable.labelOf("openKeys")
                    onTriggered: bar.openKeys()
                }
            }
        }
    }

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
    }
}
