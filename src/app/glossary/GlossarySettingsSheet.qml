pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Glossary
import Lumaphone.Keys
import Lumaphone.Texts

/// Manages the glossary: new terms above, the list below, import and export at the bottom. A glossary file can be dropped
/// anywhere on it.
Sheet {
    id: sheet

    required property GlossarySettingsModel settings

    objectName: "glossary"
    width: 680
    title: Texts.glossary
    subtitle: Texts.glossarySubtitle
    systemImage: "text.book.closed"
    initialFocus: source
    onClosed: settings.dismissMessages()

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.gap

        TextFieldBox {
            id: source

            Layout.fillWidth: true
            objectName: "glossary.new.source"
            accessibleName: Texts.newTermSource
            placeholderText: Texts.newTermSourcePlaceholder
            text: sheet.settings.newTerm.source
            onEdited: sheet.settings.newTerm.source = source.text
            onAccepted: sheet.addTerm()
        }

        TextFieldBox {
            id: target

            Layout.fillWidth: true
            objectName: "glossary.new.target"
            accessibleName: Texts.newTermTarget
            placeholderText: Texts.newTermTargetPlaceholder
            text: sheet.settings.newTerm.target
            onEdited: sheet.settings.newTerm.target = target.text
            onAccepted: sheet.addTerm()
        }
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: -Theme.half
        spacing: Theme.gap

        UiText {
            text: Texts.mode
            color: Theme.textSecondary
            Accessible.ignored: true
        }

        PopUpPicker {
            objectName: "glossary.new.mode"
            help: Texts.mode
            model: sheet.settings.modes
            selection: sheet.settings.newTerm.mode
            alignment: Qt.AlignLeft
            onPicked: value => sheet.settings.newTerm.mode = value
        }

        ToggleSwitch {
            Layout.leftMargin: Theme.unit
            objectName: "glossary.new.caseSensitive"
            text: Texts.caseSensitive
            checked: sheet.settings.newTerm.caseSensitive
            onToggled: sheet.settings.newTerm.caseSensitive = checked
        }

        Item {
            Layout.fillWidth: true
        }

        ActionButton {
            objectName: "glossary.new.add"
            text: Texts.addTerm
            systemImage: "plus"
            kind: ActionButton.Kind.Primary
            enabled: sheet.settings.newTerm.isUsable
            onClicked: sheet.addTerm()
        }
    }

    MessageBanner {
        Layout.fillWidth: true
        objectName: "glossary.importError"
        visible: text !== ""
        text: sheet.settings.importError
        onDismissed: sheet.settings.dismissMessages()
    }

    MessageBanner {
        Layout.fillWidth: true
        objectName: "glossary.storeError"
        visible: text !== ""
        isDismissable: false
        text: sheet.settings.storeError
    }

    MessageBanner {
        Layout.fillWidth: true
        objectName: "glossary.notice"
        visible: text !== ""
        tone: MessageBanner.Tone.Success
        text: sheet.settings.notice
        onDismissed: sheet.settings.dismissMessages()
    }

    Rectangle {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.preferredHeight: 320
        Layout.minimumHeight: 120
        radius: Theme.radius
        color: Theme.field
        border.width: drop.containsDrag ? 2 : 1
        border.color: drop.containsDrag ? Theme.accent : Theme.hairline

        ListView {
            id: list

            objectName: "glossary.list"
            anchors.fill: parent
            anchors.margins: Theme.half
            // The last row can be seen beside what lies over the list.
            bottomMargin: deletion.visible ? deletion.height + Theme.unit : 0
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: count > 0
            model: sheet.settings.terms
            highlightMoveDuration: 0
            T.ScrollBar.vertical: AppScrollBar {}

            Accessible.role: Accessible.List
            Accessible.name: Texts.terms
            Keys.onSpacePressed: sheet.settings.toggle(currentIndex)
            Keys.onReturnPressed: sheet.settings.edit(currentIndex)
            Keys.onEnterPressed: sheet.settings.edit(currentIndex)
            Keys.onDeletePressed: sheet.deleteTerm(currentIndex)

            delegate: GlossaryTermRow {
                required property bool isEnabled

                width: list.width
                objectName: "glossary.term." + index
                isTermEnabled: isEnabled
                isCurrent: list.activeFocus && list.currentIndex === index
                onClicked: {
                    list.currentIndex = index;
                    list.forceActiveFocus();
                }
                onSwitched: sheet.settings.toggle(index)
                onEdited: sheet.settings.edit(index)
                onDeleted: sheet.deleteTerm(index)
            }
        }

        EmptyState {
            objectName: "glossary.empty"
            anchors.fill: parent
            visible: list.count === 0
            systemImage: "text.book.closed"
            title: Texts.glossaryEmpty
        }

        MessageBanner {
            id: deletion

            objectName: "glossary.deletion"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: Theme.unit
            visible: text !== ""
            tone: MessageBanner.Tone.Neutral
            text: sheet.settings.deletionNotice
            actionText: Texts.undoDeletion
            actionHelp: Texts.undoDeletionHelp
            isDismissable: false
            onActed: sheet.undoDeletion()
        }

        CommandShortcut {
            command: "undoDeletion"
            enabled: deletion.visible && !sheet.settings.isEditing
            onActivated: sheet.undoDeletion()
        }

        DropArea {
            id: drop

            objectName: "glossary.drop"
            anchors.fill: parent
            keys: ["text/uri-list"]
            onDropped: event => {
                sheet.settings.importFiles(event.urls);
                event.acceptProposedAction();
            }
        }

        Rectangle {
            anchors.fill: parent
            visible: drop.containsDrag
            radius: parent.radius
            color: Theme.accentWell
            opacity: 0.94

            UiText {
                anchors.centerIn: parent
                text: Texts.dropToImport
                color: Theme.accentText
                font.bold: true
            }
        }
    }

    footer: [
        ActionButton {
            objectName: "glossary.import"
            text: sheet.settings.isImporting ? Texts.importing : Texts.importTerms
            systemImage: "square.and.arrow.down"
            enabled: !sheet.settings.isImporting
            onClicked: importDialog.open()
        },
        ActionButton {
            objectName: "glossary.export"
            text: Texts.exportTerms
            systemImage: "square.and.arrow.up"
            enabled: list.count > 0
            onClicked: {
                exportDialog.selectedFile = sheet.settings.exportFile;
                exportDialog.open();
            }
        },
        ToolbarIconButton {
            objectName: "glossary.reveal"
            systemImage: "folder"
            help: Texts.showInFileManager
            onClicked: sheet.settings.openGlossaryFolder()
        },
        Item {
            Layout.fillWidth: true
        },
        ActionButton {
            objectName: "glossary.done"
            text: Texts.done
            onClicked: sheet.close()
        }
    ]

    function addTerm(): void {
        if (!settings.newTerm.isUsable)
            return;
        settings.addTerm();
        list.positionViewAtEnd();
        source.forceActiveFocus();
    }

    /// The row that had the keyboard is gone; the list keeps it.
    function deleteTerm(row: int): void {
        settings.remove(row);
        list.forceActiveFocus();
    }
    function undoDeletion(): void {
        const row = settings.undoDeletion();
        if (row < 0)
            return;
        list.currentIndex = row;
        list.positionViewAtIndex(row, ListView.Contain);
        list.forceActiveFocus();
    }

    GlossaryTermEditorSheet {
        term: sheet.settings.editingTerm
        modes: sheet.settings.modes
        visible: sheet.settings.isEditing
        onSaved: sheet.settings.saveEditedTerm()
        onClosed: sheet.settings.cancelEditing()
    }

    FileDialog {
        id: importDialog

        objectName: "glossary.importDialog"
        title: Texts.importTitle
        fileMode: FileDialog.OpenFiles
        nameFilters: [Texts.importFilter, Texts.anyFileFilter]
        onVisibleChanged: OpenDialogs.note(importDialog, visible)
        onAccepted: sheet.settings.importFiles(selectedFiles)
    }

    FileDialog {
        id: exportDialog

        objectName: "glossary.exportDialog"
        title: Texts.exportGlossaryTitle
        fileMode: FileDialog.SaveFile
        defaultSuffix: "yaml"
        nameFilters: [Texts.exportFilter]
        onVisibleChanged: OpenDialogs.note(exportDialog, visible)
        onAccepted: sheet.settings.exportYAML(selectedFile)
    }
}
