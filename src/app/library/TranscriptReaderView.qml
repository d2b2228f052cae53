pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Library
import Lumaphone.Texts

/// An opened transcript: the note and the terms above its lines, which are read or edited.
ListView {
    id: reader

    required property string note
    required property TranscriptLinesModel lines
    required property list<string> glossaryTerms
    property bool isEditing: false

    signal noteEdited(text: string)

    readonly property real columnWidth: Math.max(0, Math.min(width - 2 * Theme.margin, 880))

    model: lines
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    reuseItems: true
    cacheBuffer: 400
    topMargin: head.height
    bottomMargin: Theme.margin
    T.ScrollBar.vertical: AppScrollBar {}

    Accessible.role: Accessible.List
    Accessible.name: Texts.transcript
    Keys.onPressed: event => {
        const page = Math.max(40, height - 80);
        const steps = {
            [Qt.Key_Up]: -60,
            [Qt.Key_Down]: 60,
            [Qt.Key_PageUp]: -page,
            [Qt.Key_PageDown]: page
        };
        if (event.key === Qt.Key_Home) {
            contentY = originY - topMargin;
        } else if (event.key === Qt.Key_End) {
            positionViewAtEnd();
            contentY = originY + Math.max(0, contentHeight + bottomMargin - height);
        } else if (steps[event.key] !== undefined) {
            const last = originY + Math.max(0, contentHeight + bottomMargin - height);
            contentY = Math.max(originY - topMargin, Math.min(last, contentY + steps[event.key]));
        } else {
            return;
        }
        event.accepted = true;
    }

    // Not a header component, which could not refer to this view.
    Item {
        id: head

        parent: reader.contentItem
        y: reader.originY - height
        width: reader.width
        height: top.implicitHeight + Theme.space + Theme.margin

        ColumnLayout {
            id: top

            x: Theme.margin
            y: Theme.space
            width: reader.columnWidth
            spacing: Theme.space

            TextAreaBox {
                id: note

                Layout.fillWidth: true
                objectName: "library.note"
                accessibleName: Texts.note
                placeholderText: Texts.note
                text: reader.note
                onEdited: reader.noteEdited(note.text)
            }

            GlossaryTermChips {
                Layout.fillWidth: true
                terms: reader.glossaryTerms
            }
        }
    }

    delegate: Item {
        id: row

        required property int index
        required property int number
        required property string sourceText
        required property string translatedText
        required property string sourceLanguage
        required property var model

        width: reader.width
        implicitHeight: (reader.isEditing ? editable.implicitHeight : readable.implicitHeight) + Theme.margin

        EditableTranscriptLine {
            id: editable

            x: Theme.margin
            width: reader.columnWidth
            visible: reader.isEditing
            number: row.number
            sourceText: row.sourceText
            translatedText: row.translatedText
            sourceLanguage: row.sourceLanguage
            onSourceEdited: text => row.model.sourceText = text
            onTranslationEdited: text => row.model.translatedText = text
        }

        ColumnLayout {
            id: readable

            x: Theme.margin
            width: reader.columnWidth
            visible: !reader.isEditing
            spacing: Theme.half
            Accessible.role: Accessible.ListItem
            Accessible.name: Texts.followed(Texts.followed(row.number, row.sourceText), row.translatedText)

            LanguageText {
                Layout.fillWidth: true
                text: row.sourceText
                language: row.sourceLanguage
                color: Theme.textSecondary
                lineHeight: 1.3
                Accessible.ignored: true
            }

            UiText {
                Layout.topMargin: Theme.half
                text: Texts.taiwanTranslation
                font.pixelSize: Theme.caption
                color: Theme.textSoft
                Accessible.ignored: true
            }

            LanguageText {
                Layout.fillWidth: true
                text: row.translatedText === "" ? Texts.noTranslation : row.translatedText
                color: row.translatedText === "" ? Theme.textSoft : Theme.text
                font.pixelSize: Theme.title
                lineHeight: 1.3
                Accessible.ignored: true
            }
        }
    }

    FocusRing {
        isShown: reader.activeFocus
        gap: -4
        parent: reader
    }
}
