import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls

/// A text field of several lines that grows with its text.
FocusScope {
    id: box

    property string label
    property string accessibleName: label
    property string language
    property int minimumLines: 1
    property alias text: area.text
    property alias placeholderText: placeholder.text
    readonly property Item field: area
    /// Whether those who hear `tabbedOut` say where Tab leads from here, and how it comes here: not the order of the controls.
    property bool isTabGuided: false

    signal edited
    signal tabbedOut(isForward: bool)
    /// The cursor of `field` is elsewhere, or it has just got the keyboard.
    signal cursorMoved(cursor: rect)

    function leave(isForward: bool): void {
        if (box.isTabGuided)
            box.tabbedOut(isForward);
        else
            area.nextItemInFocusChain(isForward).forceActiveFocus(isForward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }

    implicitWidth: 240
    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: 6

        UiText {
            visible: box.label !== ""
            text: box.label
            font.pixelSize: Theme.small
            color: Theme.textSecondary
        }

        T.TextArea {
            id: area

            Layout.fillWidth: true
            focus: true
            activeFocusOnTab: !box.isTabGuided
            padding: Theme.gap
            topPadding: Theme.unit
            bottomPadding: Theme.unit
            implicitHeight: Math.max(box.minimumLines * 22 + topPadding + bottomPadding, contentHeight + topPadding + bottomPadding)
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            selectByMouse: true
            hoverEnabled: true
            color: enabled ? Theme.text : Theme.textDisabled
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentContrast
            font.family: Theme.fontFamilyOf(box.language)
            font.pixelSize: Theme.body
            objectName: box.objectName + ".field"

            Accessible.role: Accessible.EditableText
            Accessible.name: box.accessibleName === "" ? placeholder.text : box.accessibleName
            Accessible.multiLine: true

            // Tab moves on, as everywhere else.
            Keys.onTabPressed: box.leave(true)
            Keys.onBacktabPressed: box.leave(false)

            onTextChanged: {
                if (activeFocus)
                    box.edited();
            }
            onActiveFocusChanged: {
                if (activeFocus)
                    box.cursorMoved(area.cursorRectangle);
            }
            onCursorRectangleChanged: {
                if (activeFocus)
                    box.cursorMoved(area.cursorRectangle);
            }

            background: Rectangle {
                radius: Theme.radius
                color: Theme.field
                border.width: area.activeFocus ? 2 : 1
                border.color: area.activeFocus ? Theme.accent : Theme.fieldBorder
            }

            Text {
                id: placeholder

                x: area.leftPadding
                y: area.topPadding
                width: area.width - area.leftPadding - area.rightPadding
                visible: area.text === "" && area.preeditText === ""
                color: Theme.textSoft
                font: area.font
                elide: Text.ElideRight
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
        }
    }
}
