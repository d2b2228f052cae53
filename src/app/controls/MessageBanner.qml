import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// Says what went wrong, or what came of something, until it is dismissed.
Rectangle {
    id: banner

    enum Tone {
        Error,
        Success
    }

    property string text
    property int tone: MessageBanner.Tone.Error
    property bool isDismissable: true

    signal dismissed

    readonly property bool isError: tone === MessageBanner.Tone.Error

    implicitHeight: Math.max(44, row.implicitHeight + 2 * Theme.unit)
    radius: Theme.radius
    color: isError ? Theme.dangerWell : Theme.successWell

    Accessible.role: isError ? Accessible.AlertMessage : Accessible.StaticText
    Accessible.name: text

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.margins: Theme.unit
        anchors.leftMargin: Theme.gap
        spacing: Theme.gap

        Symbol {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 6
            name: banner.isError ? "exclamationmark.triangle.fill" : "checkmark.circle.fill"
            size: 18
            color: banner.isError ? Theme.danger : Theme.success
        }

        UiText {
            Layout.fillWidth: true
            text: banner.text
            color: banner.isError ? Theme.danger : Theme.success
            wrapMode: Text.Wrap
            lineHeight: 1.25
            Accessible.ignored: true
        }

        ToolbarIconButton {
            Layout.alignment: Qt.AlignTop
            objectName: banner.objectName + ".dismiss"
            visible: banner.isDismissable
            implicitWidth: 28
            implicitHeight: 28
            systemImage: "xmark"
            help: Texts.dismissMessage
            onClicked: banner.dismissed()
        }
    }
}
