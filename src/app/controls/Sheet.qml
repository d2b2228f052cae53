import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone.Controls

/// A modal sheet over the window; Escape closes it. `content` is what lies between title and footer.
T.Popup {
    id: sheet

    property string title
    property string subtitle
    property string systemImage
    default property alias content: body.data
    property alias footer: footer.data
    /// What has the keyboard when the sheet opens.
    property Item initialFocus: null

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round(Math.max(Theme.wide, (parent.height - height) / 2.4)) : 0
    width: 560
    height: Math.min(implicitHeight, parent ? parent.height - 2 * Theme.wide : implicitHeight)
    implicitHeight: column.implicitHeight
    modal: true
    focus: true
    dim: true
    closePolicy: T.Popup.CloseOnEscape
    padding: 0

    onVisibleChanged: OpenDialogs.note(sheet, visible)
    Component.onDestruction: OpenDialogs.note(sheet, false)
    onOpened: {
        if (sheet.initialFocus)
            sheet.initialFocus.forceActiveFocus();
    }

    // Its own item is the dialog that a screen reader comes to.
    Binding {
        target: sheet.contentItem.parent.Accessible
        property: "name"
        value: sheet.title
    }

    FocusScope {
        anchors.fill: parent
        focus: true

        ColumnLayout {
            id: column

            anchors.fill: parent
            spacing: 0

            RowLayout {
                Layout.fillWidth: true
                Layout.margins: Theme.margin
                Layout.bottomMargin: Theme.space
                spacing: Theme.space

                Rectangle {
                    Layout.alignment: Qt.AlignTop
                    visible: sheet.systemImage !== ""
                    implicitWidth: 40
                    implicitHeight: 40
                    radius: Theme.radius
                    color: Theme.accentWell

                    Symbol {
                        anchors.centerIn: parent
                        name: sheet.systemImage
                        size: 22
                        color: Theme.accentText
                    }
                }

                Column {
                    Layout.fillWidth: true
                    Layout.alignment: Qt.AlignVCenter
                    spacing: Theme.half

                    UiText {
                        width: parent?.width ?? 0
                        text: sheet.title
                        font.pixelSize: Theme.heading
                        font.bold: true
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }

                    UiText {
                        width: parent?.width ?? 0
                        visible: sheet.subtitle !== ""
                        text: sheet.subtitle
                        color: Theme.textSecondary
                        lineHeight: 1.3
                        wrapMode: Text.Wrap
                    }
                }
            }

            ColumnLayout {
                id: body

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.leftMargin: Theme.margin
                Layout.rightMargin: Theme.margin
                spacing: Theme.space
            }

            Hairline {
                Layout.fillWidth: true
                Layout.topMargin: Theme.margin
                visible: footer.children.length > 0
            }

            RowLayout {
                id: footer

                Layout.fillWidth: true
                Layout.margins: Theme.space
                Layout.leftMargin: Theme.margin
                Layout.rightMargin: Theme.margin
                spacing: Theme.gap
            }
        }
    }

    background: PopupSurface {
        radius: Theme.radiusLarge
    }

    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.quick
        }
    }

    exit: Transition {
        NumberAnimation {
            property: "opacity"
            from: 1
            to: 0
            duration: Theme.quick
        }
    }
}
