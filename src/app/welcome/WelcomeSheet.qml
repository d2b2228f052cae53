pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Inspector
import Lumaphone.Models
import Lumaphone.Texts
import Lumaphone.Welcome

/// What a new user wants to know: what is heard, in which language, what works already and what can be had. Nothing has to be
/// chosen. Once it has been closed it comes only when it is asked for.
Sheet {
    id: sheet

    /// None where nobody is welcomed.
    required property WelcomeModel welcome
    required property InspectorModel inspector
    /// None where nothing can be installed.
    required property ModelOffer offer
    /// Whether input and language cannot be changed, as while a session runs.
    required property bool isLocked

    objectName: "welcome"
    width: 600
    title: Texts.welcomeTitle
    subtitle: Texts.welcomeSubtitle
    systemImage: "captions.bubble.fill"
    initialFocus: begin
    onClosed: sheet.welcome?.close()

    Flickable {
        id: flickable

        /// Where the keyboard is, if it is here.
        readonly property Item focused: flickable.Window.activeFocusItem

        objectName: "welcome.flickable"
        Layout.fillWidth: true
        Layout.fillHeight: true
        implicitHeight: points.implicitHeight
        contentHeight: points.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: AppScrollBar {}

        // What the keyboard comes to can be seen.
        onFocusedChanged: {
            let ancestor = flickable.focused;
            while (ancestor !== null && ancestor !== points)
                ancestor = ancestor.parent;
            if (ancestor === null)
                return;
            const top = flickable.focused.mapToItem(points, 0, 0).y - Theme.margin;
            const bottom = top + flickable.focused.height + 2 * Theme.margin;
            const end = Math.max(0, flickable.contentHeight - flickable.height);
            flickable.contentY = Math.max(0, Math.min(end, Math.max(Math.min(flickable.contentY, top), bottom - flickable.height)));
        }

        ColumnLayout {
            id: points

            // Beside the scroll bar.
            width: flickable.width - Theme.gap
            spacing: Theme.space

            WelcomePoint {
                Layout.fillWidth: true
                systemImage: "speaker.wave.2.fill"
                title: Texts.welcomeSource
                text: Texts.welcomeSourceHint
                choice: PopUpPicker {
                    objectName: "welcome.source"
                    help: Texts.audioSource
                    model: sheet.inspector.audioInputSources
                    selection: sheet.inspector.audioInputSource
                    enabled: !sheet.isLocked
                    isSymbolShown: true
                    onPicked: value => sheet.inspector.audioInputSource = value
                }
            }

            WelcomePoint {
                Layout.fillWidth: true
                systemImage: "character.cursor.ibeam"
                title: Texts.welcomeLanguage
                text: Texts.welcomeLanguageHint
                choice: PopUpPicker {
                    objectName: "welcome.language"
                    help: Texts.sourceLanguage
                    model: sheet.inspector.commandBarLanguages
                    selection: sheet.inspector.sourceLanguage
                    enabled: !sheet.isLocked
                    onPicked: value => sheet.inspector.sourceLanguage = value
                }
            }

            WelcomePoint {
                Layout.fillWidth: true
                systemImage: "lock.fill"
                title: Texts.welcomePrivacy
                text: Texts.welcomePrivacyHint
            }

            WelcomePoint {
                Layout.fillWidth: true
                visible: sheet.offer !== null
                systemImage: "checkmark.circle.fill"
                title: Texts.welcomeBundled

                Repeater {
                    model: sheet.offer?.models ?? null

                    WelcomeModelRow {
                        required property int index

                        objectName: "welcome.bundled." + index
                        Layout.fillWidth: true
                        visible: !isInstallable
                    }
                }
            }

            WelcomePoint {
                Layout.fillWidth: true
                visible: sheet.offer !== null
                systemImage: "tray.and.arrow.down.fill"
                title: Texts.welcomeModels
                text: Texts.welcomeModelsHint

                Repeater {
                    model: sheet.offer?.models ?? null

                    WelcomeModelRow {
                        required property int index

                        objectName: "welcome.models." + index
                        Layout.fillWidth: true
                        visible: isInstallable
                        onWanted: sheet.offer.want(index)
                        onCancelled: sheet.offer.stop(index)
                    }
                }
            }
        }
    }

    footer: [
        UiText {
            Layout.fillWidth: true
            text: Texts.welcomeAgain
            font.pixelSize: Theme.small
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        },
        PrimaryButton {
            id: begin

            objectName: "welcome.done"
            text: Texts.welcomeDone
            onClicked: sheet.close()
        }
    ]
}
