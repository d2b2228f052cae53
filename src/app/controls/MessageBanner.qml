import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// Says what went wrong, or what came of something, until it is dismissed.
Rectangle {
    id: banner

    enum Tone {
        Error,
        Success,
        Neutral
    }

    property string text
    property int tone: MessageBanner.Tone.Error
    property bool isDismissable: true
    /// What can be done about it; nothing while empty.
    property string actionText
    property string actionHelp
    readonly property Item actionButton: action

    signal dismissed
    signal acted

    readonly property bool isError: tone === MessageBanner.Tone.Error
    readonly property color foreground: [Theme.danger, Theme.success, Theme.text][tone]

    implicitHeight: Math.max(44, row.implicitHeight + 2 * Theme.unit)
    radius: Theme.radius
    color: [Theme.dangerWell, Theme.successWell, Theme.well][tone]

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
            name: ["exclamationmark.triangle.fill", "checkmark.circle.fill", "info.circle"][banner.tone]
            size: 18
            color: banner.foreground
        }

        UiText {
            Layout.fillWidth: true
            text: banner.text
            color: banner.foreground
            wrapMode: Text.Wrap
            lineHeight: 1.25
            Accessible.ignored: true
        }

        ActionButton {
            id: action

            objectName: banner.objectName + ".action"
            visible: banner.actionText !== ""
            isCompact: true
            kind: ActionButton.Kind.Quiet
            text: banner.actionText
            help: banner.actionHelp
            onClicked: banner.acted()
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
