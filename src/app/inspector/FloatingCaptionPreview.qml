import QtQuick
import Lumaphone

/// How the floating captions will look over a picture, at a fraction of their size.
Rectangle {
    id: preview

    required property InspectorModel inspector
    readonly property real scaleDown: 0.46
    readonly property string look: inspector.captionTheme
    readonly property string mode: inspector.captionDisplayMode

    implicitHeight: 148
    radius: Theme.gap
    clip: true
    Accessible.role: Accessible.Graphic
    Accessible.name: "浮動字幕預覽"

    gradient: Gradient {
        GradientStop {
            position: 0
            color: "#5c7390"
        }

        GradientStop {
            position: 1
            color: "#2c3550"
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: parent.width - 2 * Theme.space
        height: Math.min(parent.height - Theme.space, texts.implicitHeight + 2 * 18 * preview.scaleDown + Theme.unit)
        radius: Theme.unit
        color: Qt.alpha(preview.look === "dark" ? "black" : preview.look === "light" ? "white" : Theme.window, preview.inspector.captionOpacity)
        border.width: 1
        border.color: preview.look === "dark" ? Qt.rgba(1, 1, 1, 0.16) : preview.look === "light" ? Qt.rgba(0, 0, 0, 0.14) : Qt.alpha(Theme.accent, 0.22)

        Column {
            id: texts

            anchors.centerIn: parent
            width: parent.width - 2 * Theme.gap

            LanguageText {
                width: parent.width
                visible: preview.mode !== "translationOnly"
                horizontalAlignment: Text.AlignHCenter
                text: preview.inspector.previewSourceText
                language: "japanese"
                font.pixelSize: Math.max(preview.inspector.captionFontSize * 0.58, 14) * preview.scaleDown * 1.2
                maximumLineCount: 2
                elide: Text.ElideRight
                color: preview.look === "dark" ? Qt.rgba(1, 1, 1, 0.72) : preview.look === "light" ? Qt.rgba(0, 0, 0, 0.62) : Theme.textSecondary
                Accessible.ignored: true
            }

            LanguageText {
                width: parent.width
                visible: preview.mode !== "sourceOnly"
                horizontalAlignment: Text.AlignHCenter
                text: preview.inspector.previewTranslationText
                font.pixelSize: preview.inspector.captionFontSize * preview.scaleDown
                font.bold: true
                maximumLineCount: 2
                elide: Text.ElideRight
                color: preview.look === "dark" ? "white" : preview.look === "light" ? "black" : Theme.text
                Accessible.ignored: true
            }
        }
    }
}
