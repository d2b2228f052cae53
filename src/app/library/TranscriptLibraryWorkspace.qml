pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Keys
import Lumaphone.Library
import Lumaphone.Texts

/// The library of saved transcripts: the list with its search, and the selected transcript.
FocusScope {
    id: library

    required property TranscriptLibraryWorkspaceModel workspace

    objectName: "library"
    Accessible.role: Accessible.Pane
    Accessible.name: Texts.library

    onVisibleChanged: library.appear()
    Component.onCompleted: library.appear()

    function appear(): void {
        if (!visible)
            return;
        workspace.selectInitialRecordIfNeeded();
        workspace.prepareSearch();
    }

    function askForFile(format: string): void {
        exportDialog.defaultSuffix = format;
        exportDialog.nameFilters = [workspace.exportNameFilter(format)];
        exportDialog.selectedFile = workspace.exportFile(format);
        exportDialog.open();
    }

    CommandShortcut {
        command: "searchLibrary"
        enabled: library.visible
        onActivated: search.selectAll()
    }

    CommandShortcut {
        command: "saveEdits"
        enabled: library.visible && library.workspace.hasUnsavedEdits
        onActivated: library.workspace.saveEdits()
    }

    RowLayout {
        anchors.fill: parent
        anchors.margins: Theme.margin
        spacing: Theme.margin

        ColumnLayout {
            Layout.preferredWidth: 320
            Layout.maximumWidth: 320
            Layout.fillHeight: true
            spacing: Theme.gap

            TextFieldBox {
                id: search

                Layout.fillWidth: true
                objectName: "library.search"
                accessibleName: Texts.searchRecords
                placeholderText: Texts.searchPlaceholder
                systemImage: "magnifyingglass"
                isClearable: true
                text: library.workspace.searchText
                onEdited: library.workspace.searchText = search.text
                Keys.onDownPressed: list.forceActiveFocus()
                Keys.onEscapePressed: search.clear()
            }

            Card {
                Layout.fillWidth: true
                Layout.fillHeight: true
                padding: Theme.unit

                Item {
                    anchors.fill: parent

                    ListView {
                        id: list

                        objectName: "library.list"
                        anchors.fill: parent
                        clip: true
                        spacing: 2
                        boundsBehavior: Flickable.StopAtBounds
                        activeFocusOnTab: true
                        reuseItems: true
                        model: library.workspace.records
                        currentIndex: library.workspace.selectedRow
                        highlightMoveDuration: 0
                        T.ScrollBar.vertical: AppScrollBar {}

                        Accessible.role: Accessible.List
                        Accessible.name: Texts.records
                        onActiveFocusChanged: {
                            if (activeFocus)
                                list.positionViewAtIndex(list.currentIndex, ListView.Contain);
                        }
                        Keys.onUpPressed: library.workspace.selectRow(library.workspace.selectedRow - 1)
                        Keys.onDownPressed: library.workspace.selectRow(library.workspace.selectedRow + 1)
                        Keys.onDeletePressed: library.workspace.requestDelete()

                        delegate: TranscriptRecordRow {
                            required property string recordId

                            width: list.width
                            objectName: "library.record." + index
                            isSelected: library.workspace.selectedID === recordId
                            isListFocused: list.activeFocus
                            onClicked: {
                                library.workspace.select(recordId);
                                list.forceActiveFocus();
                            }
                        }
                    }

                    EmptyState {
                        objectName: "library.empty"
                        anchors.fill: parent
                        visible: library.workspace.emptyListText !== ""
                        systemImage: library.workspace.searchText === "" ? "tray.and.arrow.down" : "magnifyingglass"
                        title: library.workspace.emptyListText
                    }
                }
            }
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true

            Item {
                anchors.fill: parent

                EmptyState {
                    objectName: "library.noSelection"
                    anchors.fill: parent
                    visible: library.workspace.selectedID === ""
                    systemImage: "captions.bubble"
                    title: Texts.selectRecord
                    message: Texts.selectRecordDetail
                }

                EmptyState {
                    objectName: "library.broken"
                    anchors.fill: parent
                    anchors.topMargin: Theme.wide * 2
                    visible: library.workspace.selectedID !== "" && !library.workspace.isLoaded
                    systemImage: "exclamationmark.triangle.fill"
                    title: Texts.recordBroken
                    message: Texts.recordBrokenDetail

                    ActionButton {
                        objectName: "library.broken.reveal"
                        text: Texts.openFolder
                        systemImage: "folder"
                        onClicked: library.workspace.openFolder()
                    }

                    ActionButton {
                        objectName: "library.broken.delete"
                        text: Texts.deleteRecord
                        systemImage: "trash"
                        kind: ActionButton.Kind.Destructive
                        onClicked: library.workspace.requestDelete()
                    }
                }

                ColumnLayout {
                    anchors.fill: parent
                    spacing: 0

                    RowLayout {
                        Layout.fillWidth: true
                        Layout.margins: Theme.space
                        Layout.bottomMargin: 0
                        Layout.leftMargin: Theme.gap
                        visible: library.workspace.isLoaded
                        spacing: Theme.half

                        TextFieldBox {
                            id: title

                            Layout.fillWidth: true
                            objectName: "library.title"
                            accessibleName: Texts.title
                            placeholderText: Texts.titlePlaceholder
                            isTitle: true
                            text: library.workspace.title
                            onEdited: library.workspace.title = title.text
                            onAccepted: library.workspace.finishEditing()
                        }

                        ToolbarIconButton {
                            objectName: "library.edit"
                            systemImage: "pencil"
                            help: library.workspace.isEditingTranscript ? Texts.endEditing : Texts.editLines
                            isToggle: true
                            isSelected: library.workspace.isEditingTranscript
                            onClicked: library.workspace.isEditingTranscript = !library.workspace.isEditingTranscript
                        }

                        MenuButton {
                            objectName: "library.copy"
                            systemImage: "doc.on.doc"
                            help: Texts.copyText

                            AppMenu {
                                AppMenuItem {
                                    objectName: "library.copy.bilingual"
                                    text: Texts.copyBoth
                                    onTriggered: library.workspace.copyBilingualText()
                                }
                                AppMenuItem {
                                    objectName: "library.copy.source"
                                    text: Texts.copySource
                                    onTriggered: library.workspace.copySourceText()
                                }
                                AppMenuItem {
                                    objectName: "library.copy.translation"
                                    text: Texts.copyTranslation
                                    onTriggered: library.workspace.copyTranslationText()
                                }
                            }
                        }

                        MenuButton {
                            objectName: "library.export"
                            systemImage: "square.and.arrow.up"
                            help: Texts.exportRecord

                            AppMenu {
                                Repeater {
                                    model: library.workspace.exportFormats

                                    AppMenuItem {
                                        required property var modelData

                                        objectName: "library.export." + modelData.format
                                        text: modelData.title
                                        systemImage: "square.and.arrow.down"
                                        onTriggered: library.askForFile(modelData.format)
                                    }
                                }
                            }
                        }

                        ToolbarIconButton {
                            objectName: "library.reveal"
                            systemImage: "folder"
                            help: Texts.showInFileManager
                            onClicked: library.workspace.openFolder()
                        }

                        ToolbarIconButton {
                            objectName: "library.delete"
                            systemImage: "trash"
                            help: Texts.deleteRecord
                            onClicked: library.workspace.requestDelete()
                        }
                    }

                    RowLayout {
                        Layout.fillWidth: true
                        Layout.leftMargin: Theme.margin
                        Layout.rightMargin: Theme.space
                        Layout.bottomMargin: Theme.gap
                        Layout.minimumHeight: Theme.controlHeightSmall
                        visible: library.workspace.isLoaded
                        spacing: Theme.unit

                        UiText {
                            Layout.fillWidth: true
                            objectName: "library.subtitle"
                            text: library.workspace.subtitle
                            font.pixelSize: Theme.small
                            color: Theme.textSecondary
                            elide: Text.ElideRight
                        }

                        ActionButton {
                            objectName: "library.revert"
                            visible: library.workspace.hasUnsavedEdits
                            isCompact: true
                            text: Texts.revert
                            help: Texts.revertHelp
                            systemImage: "arrow.counterclockwise.circle.fill"
                            onClicked: library.workspace.revertEdits()
                        }

                        ActionButton {
                            objectName: "library.save"
                            visible: library.workspace.hasUnsavedEdits
                            isCompact: true
                            text: Texts.saveEdits
                            help: Texts.saveEditsHelp
                            kind: ActionButton.Kind.Primary
                            onClicked: library.workspace.saveEdits()
                        }
                    }

                    MessageBanner {
                        Layout.fillWidth: true
                        Layout.leftMargin: Theme.margin
                        Layout.rightMargin: Theme.margin
                        Layout.topMargin: library.workspace.isLoaded ? 0 : Theme.margin
                        Layout.bottomMargin: Theme.gap
                        objectName: "library.error"
                        visible: text !== ""
                        text: library.workspace.errorMessage
                        onDismissed: library.workspace.dismissError()
                    }

                    Hairline {
                        Layout.fillWidth: true
                        visible: library.workspace.isLoaded
                    }

                    TranscriptReaderView {
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        objectName: "library.reader"
                        visible: library.workspace.isLoaded
                        note: library.workspace.note
                        lines: library.workspace.draftLines
                        glossaryTerms: library.workspace.glossaryTerms
                        isEditing: library.workspace.isEditingTranscript
                        onNoteEdited: text => library.workspace.note = text
                    }

                    Item {
                        Layout.fillHeight: true
                        visible: !library.workspace.isLoaded
                    }
                }
            }
        }
    }

    ConfirmationAlert {
        id: deleteAlert

        objectName: "library.deleteAlert"
        title: Texts.deleteRecordTitle
        subtitle: library.workspace.pendingDeleteTitle
        message: Texts.deleteRecordMessage
        confirmText: Texts.deleteIt
        onConfirmed: library.workspace.deletePendingRecord()
        onClosed: library.workspace.cancelDelete()
    }

    Connections {
        target: library.workspace

        function onPendingDeleteChanged(): void {
            if (library.workspace.hasPendingDelete)
                deleteAlert.open();
        }
    }

    FileDialog {
        id: exportDialog

        objectName: "library.exportDialog"
        title: Texts.exportTitle
        fileMode: FileDialog.SaveFile
        onVisibleChanged: OpenDialogs.note(exportDialog, visible)
        onAccepted: library.workspace.exportRecord(defaultSuffix, selectedFile)
    }
}
