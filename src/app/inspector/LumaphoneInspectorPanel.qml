import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Inspector
import Lumaphone.Live
import Lumaphone.Models
import Lumaphone.Texts

/// The controls that affect the current captions.
Rectangle {
    id: panel

    required property InspectorModel inspector
    required property LiveSessionModel session
    /// None where nothing can be installed.
    property ModelOffer modelOffer: null
    readonly property bool isLocked: session.isRunning || session.isStarting

    signal languagePicked(language: string)
    signal modelRemovalWanted(row: int, title: string, consequences: string)
    signal modelLicenceWanted(title: string, text: string)
    signal openProvider
    signal openGlossary
    signal clear

    implicitWidth: 312
    color: Theme.surface
    Accessible.role: Accessible.Grouping
    Accessible.name: Texts.inspector

    Hairline {
        anchors.top: parent.top
        anchors.bottom: parent.bottom
    }

    Flickable {
        id: flickable

        objectName: "inspector.flickable"
        anchors.fill: parent
        anchors.leftMargin: 1
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * column.x
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: AppScrollBar {}

        Connections {
            target: panel.Window.window

            function onActiveFocusItemChanged(): void {
                const item = panel.Window.activeFocusItem;
                for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
                    if (ancestor === column)
                        flickable.reveal(item);
                }
            }
        }

        /// Brings what has the keyboard into view.
        function reveal(item: Item): void {
            const top = item.mapToItem(flickable.contentItem, 0, 0).y - Theme.margin;
            const bottom = top + item.height + 2 * Theme.margin;
            if (top < contentY)
                contentY = Math.max(0, top);
            else if (bottom > contentY + height)
                contentY = Math.min(contentHeight - height, bottom - height);
        }

        ColumnLayout {
            id: column

            x: 20
            y: 20
            // Never less, not even before the first layout: texts that wrapped in between would leave their gaps.
            width: Math.max(panel.implicitWidth - 1, flickable.width) - 2 * x
            spacing: Theme.margin

            ColumnLayout {
                Layout.fillWidth: true
                spacing: Theme.gap

                UiText {
                    Layout.fillWidth: true
                    text: Texts.inspectorHint
                    font.pixelSize: Theme.small
                    color: Theme.textSecondary
                    wrapMode: Text.Wrap
                }

                Notice {
                    objectName: "inspector.unsaved"
                    Layout.fillWidth: true
                    visible: panel.session.hasUnsavedTranscript
                    text: Texts.unsavedCaptions
                    systemImage: "exclamationmark.circle.fill"
                    tone: Chip.Tone.Warning
                }
            }

            InspectorSection {
                Layout.fillWidth: true
                title: Texts.input

                PickerRow {
                    objectName: "inspector.source"
                    Layout.fillWidth: true
                    title: Texts.audioSource
                    systemImage: panel.session.audioSourceSymbol
                    model: panel.inspector.audioInputSources
                    selection: panel.inspector.audioInputSource
                    isDisabled: panel.isLocked
                    onPicked: value => panel.inspector.audioInputSource = value
                }

                PickerRow {
                    objectName: "inspector.language"
                    Layout.fillWidth: true
                    title: Texts.sourceLanguage
                    systemImage: "character.cursor.ibeam"
                    model: panel.inspector.sourceLanguages
                    selection: panel.inspector.sourceLanguage
                    isDisabled: panel.isLocked
                    onPicked: value => {
                        panel.inspector.sourceLanguage = value;
                        panel.languagePicked(value);
                    }
                }

                PickerRow {
                    objectName: "inspector.mode"
                    Layout.fillWidth: true
                    title: Texts.processingMode
                    systemImage: "bolt.horizontal.circle"
                    model: panel.inspector.processingModes
                    selection: panel.inspector.processingMode
                    onPicked: value => panel.inspector.processingMode = value
                }

                RowLayout {
                    Layout.topMargin: Theme.half
                    spacing: Theme.unit

                    Symbol {
                        name: "character.book.closed"
                        size: 18
                    }

                    UiText {
                        Layout.fillWidth: true
                        text: Texts.outputLanguage
                    }
                }
            }

            Hairline {
                Layout.fillWidth: true
                visible: models.visible
            }

            ModelsSection {
                id: models

                Layout.fillWidth: true
                visible: panel.modelOffer !== null
                offer: panel.modelOffer
                onRemovalWanted: (row, title, consequences) => panel.modelRemovalWanted(row, title, consequences)
                onLicenceWanted: (title, text) => panel.modelLicenceWanted(title, text)
            }

            Hairline {
                Layout.fillWidth: true
            }

            FloatingCaptionSection {
                Layout.fillWidth: true
                inspector: panel.inspector
            }

            Hairline {
                Layout.fillWidth: true
            }

            InspectorSection {
                Layout.fillWidth: true
                title: Texts.customProvider

                UiText {
                    objectName: "inspector.providerSummary"
                    Layout.fillWidth: true
                    text: panel.inspector.providerSummary
                    font.pixelSize: Theme.small
                    color: Theme.textSecondary
                    lineHeight: 1.3
                    wrapMode: Text.Wrap
                }

                CapabilityRow {
                    Layout.fillWidth: true
                    title: Texts.textTranslation
                    isEnabled: panel.inspector.supportsTextTranslation
                }

                CapabilityRow {
                    Layout.fillWidth: true
                    title: Texts.textPolishing
                    isEnabled: panel.inspector.supportsTextPolishing
                }

                CapabilityRow {
                    Layout.fillWidth: true
                    title: Texts.glossary
                    isEnabled: panel.inspector.supportsGlossary
                }

                ActionButton {
                    objectName: "inspector.manageProvider"
                    Layout.topMargin: Theme.half
                    Layout.fillWidth: true
                    text: Texts.manageProvider
                    systemImage: "server.rack"
                    onClicked: panel.openProvider()
                }
            }

            Hairline {
                Layout.fillWidth: true
            }

            InspectorSection {
                Layout.fillWidth: true
                title: Texts.terms

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Theme.unit

                    Symbol {
                        name: "text.book.closed"
                        size: 18
                    }

                    UiText {
                        objectName: "inspector.glossarySummary"
                        Layout.fillWidth: true
                        text: panel.inspector.glossarySummary
                    }

                    ActionButton {
                        objectName: "inspector.manageGlossary"
                        text: Texts.manage
                        isCompact: true
                        Accessible.name: Texts.manageTerms
                        onClicked: panel.openGlossary()
                    }
                }
            }

            ActionButton {
                objectName: "inspector.clear"
                Layout.fillWidth: true
                text: Texts.clearCaptions
                systemImage: "trash"
                kind: ActionButton.Kind.Destructive
                enabled: panel.session.canClear
                onClicked: panel.clear()
            }
        }
    }
}
