import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls
import Lumaphone.Texts

/// A one-line text field, with its label above when it has one.
FocusScope {
    id: box

    property string label
    /// What the field is, for those who cannot see its label.
    property string accessibleName: label
    property alias text: field.text
    property alias placeholderText: placeholder.text
    property alias readOnly: field.readOnly
    property string systemImage
    property bool isSecret: false
    property bool isClearable: false
    /// Larger type, without a frame until it is used: for titles.
    property bool isTitle: false
    readonly property Item field: field

    signal edited
    signal accepted

    function clear(): void {
        field.clear();
        box.edited();
    }
    function selectAll(): void {
        field.forceActiveFocus();
        field.selectAll();
    }

    implicitWidth: 240
    implicitHeight: column.implicitHeight
    // The toolkit tells nothing of a secret field but what it is in.
    Accessible.role: Accessible.Grouping
    Accessible.name: box.accessibleName
    Accessible.ignored: !box.isSecret

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

        T.TextField {
            id: field

            readonly property color textColor: field.enabled ? Theme.text : Theme.textDisabled

            Layout.fillWidth: true
            focus: true
            implicitHeight: box.isTitle ? 44 : Theme.controlHeight
            leftPadding: box.systemImage === "" ? Theme.gap : 36
            rightPadding: clearButton.visible ? 34 : Theme.gap
            verticalAlignment: TextInput.AlignVCenter
            echoMode: box.isSecret ? TextInput.Password : TextInput.Normal
            inputMethodHints: box.isSecret ? Qt.ImhSensitiveData | Qt.ImhNoPredictiveText : Qt.ImhNone
            passwordCharacter: "•"
            selectByMouse: true
            hoverEnabled: true
            color: elided.visible ? "transparent" : field.textColor
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentContrast
            font.family: Theme.fontFamily
            font.pixelSize: box.isTitle ? Theme.heading : Theme.body
            font.bold: box.isTitle
            objectName: box.objectName + ".field"

            Accessible.role: Accessible.EditableText
            Accessible.name: box.accessibleName === "" ? placeholder.text : box.accessibleName
            Accessible.description: placeholder.text
            Accessible.passwordEdit: box.isSecret

            onTextEdited: box.edited()
            // A text that is only shown is shown from its beginning; who types goes on at its end.
            onTextChanged: {
                if (!field.activeFocus)
                    field.cursorPosition = 0;
            }
            onActiveFocusChanged: {
                if (!field.activeFocus)
                    field.cursorPosition = 0;
                else if (field.focusReason !== Qt.MouseFocusReason)
                    field.cursorPosition = field.length;
            }
            onAccepted: box.accepted()

            background: Rectangle {
                radius: Theme.radius
                color: box.isTitle && !field.activeFocus && !field.hovered ? "transparent" : Theme.field
                border.width: field.activeFocus ? 2 : 1
                border.color: field.activeFocus ? Theme.accent : box.isTitle && !field.hovered ? "transparent" : Theme.fieldBorder
            }

            Text {
                id: placeholder

                anchors.fill: parent
                anchors.leftMargin: field.leftPadding
                anchors.rightMargin: field.rightPadding
                verticalAlignment: Text.AlignVCenter
                visible: field.text === "" && field.preeditText === ""
                color: Theme.textSoft
                font: field.font
                elide: Text.ElideRight
                textFormat: Text.PlainText
                Accessible.ignored: true
            }

            Text {
                id: elided

                anchors.fill: placeholder
                verticalAlignment: Text.AlignVCenter
                visible: !field.activeFocus && !box.isSecret && field.contentWidth > width
                text: field.text
                color: field.textColor
                font: field.font
                elide: Text.ElideRight
                textFormat: Text.PlainText
                objectName: box.objectName + ".elided"
                Accessible.ignored: true
            }

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                x: Theme.gap
                visible: box.systemImage !== ""
                name: box.systemImage
                size: 16
            }

            T.AbstractButton {
                id: clearButton

                anchors.verticalCenter: parent.verticalCenter
                anchors.right: parent.right
                anchors.rightMargin: Theme.half
                width: 28
                height: 28
                visible: box.isClearable && field.text !== ""
                focusPolicy: Qt.TabFocus
                onClicked: {
                    box.clear();
                    field.forceActiveFocus();
                }
                Accessible.role: Accessible.Button
                Accessible.name: Texts.clearText
                Accessible.onPressAction: clearButton.clicked()

                contentItem: Item {
                    Symbol {
                        anchors.centerIn: parent
                        name: "xmark.circle.fill"
                        size: 16
                        color: Theme.textSoft
                    }
                }

                background: Item {
                    FocusRing {
                        isShown: clearButton.visualFocus
                        gap: -2
                    }
                }
            }
        }
    }
}
