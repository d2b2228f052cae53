import QtQuick
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

/// One line of the transcript: what was said, and its translation beside it, or why there is none and a way to try again, and what
/// its reader has marked. It keeps its height when the translation arrives, unless that needs more room.
Item {
    id: row

    required property int index
    required property string sourceText
    required property string translatedText
    required property string sourceLanguage
    required property bool isFinal
    required property bool isPending
    required property bool isFailed
    required property string failure
    required property string time
    required property var sourceMarks
    required property var translationMarks
    required property bool isSelected
    /// Whether the keyboard is here.
    property bool isCurrent: false
    readonly property real columnWidth: Math.floor((width - Theme.margin) / 2)

    signal translateAgain

    function isTranslationAt(x: real): bool {
        return x >= translation.x - Theme.gap;
    }
    /// Before which character of a column a point lies.
    function offsetAt(isInTranslation: bool, x: real, y: real): int {
        const text = isInTranslation ? translation : source;
        return TextPlaces.offset(text.text, text.font, text.width, text.lineHeight, Qt.point(x - text.x, y - text.y));
    }

    width: ListView.view ? ListView.view.width - Theme.margin + Theme.half : implicitWidth
    implicitHeight: Math.max(source.height, translation.height) + Theme.gap
    Accessible.role: Accessible.ListItem
    Accessible.name: isPending ? sourceText : sourceText + "\n" + translatedText
    Accessible.description: isFailed && failure !== "" ? Texts.listed(time, failure) : time
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focusable: true
    Accessible.focused: isCurrent
    onIsCurrentChanged: {
        if (row.isCurrent)
            ScreenReader.comeTo(row);
    }
    onIndexChanged: ScreenReader.keepInOrder(row)
    Component.onCompleted: ScreenReader.keepInOrder(row)

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -Theme.unit
        anchors.bottomMargin: Theme.gap - Theme.half
        anchors.topMargin: -Theme.half
        visible: row.isCurrent
        radius: Theme.radiusSmall
        color: Theme.well
    }

    TextMarks {
        of: source
        marks: row.sourceMarks
    }

    TextMarks {
        x: translation.x
        of: translation
        marks: row.translationMarks
    }

    LanguageText {
        id: source

        width: row.columnWidth
        text: row.sourceText
        language: row.sourceLanguage
        font.pixelSize: 15
        lineHeightMode: Text.FixedHeight
        lineHeight: 24
        color: row.sourceMarks.length > 0 ? Theme.text : row.isFinal ? Theme.textSecondary : Theme.textSoft
        Accessible.ignored: true
    }

    LanguageText {
        id: translation

        x: row.columnWidth + Theme.margin
        width: row.columnWidth - (again.visible ? again.width + Theme.unit : 0)
        text: row.translatedText
        font.pixelSize: 15
        lineHeightMode: Text.FixedHeight
        lineHeight: 24
        color: row.translationMarks.length > 0 || row.isFinal && !row.isPending && !row.isFailed ? Theme.text : Theme.textSoft
        Accessible.ignored: true
    }

    ActionButton {
        id: again

        objectName: "row.translateAgain"
        anchors.right: parent.right
        y: Math.round((translation.lineHeight - height) / 2)
        visible: row.isFailed
        isCompact: true
        kind: ActionButton.Kind.Quiet
        text: Texts.translateAgain
        help: row.failure
        Accessible.name: Texts.stated(Texts.translateAgain, row.sourceText)
        onClicked: row.translateAgain()
    }
}
