import QtQuick
import Lumaphone.Controls
import Lumaphone.Floating
import Lumaphone.Inspector
import Lumaphone.Texts

/// How the floating captions will look over a picture: the panel's own content, at a fraction of its size.
Rectangle {
    id: preview

    required property InspectorModel inspector
    /// So that both sample lines have room at the default font size.
    readonly property real scaleDown: 0.4

    implicitHeight: 148
    radius: Theme.gap
    clip: true
    Accessible.role: Accessible.Graphic
    Accessible.name: Texts.preview

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

    FloatingCaptionView {
        objectName: "inspector.preview"
        anchors.centerIn: parent
        width: (preview.width - 2 * Theme.unit) / preview.scaleDown
        height: (preview.height - 2 * Theme.space) / preview.scaleDown
        scale: preview.scaleDown
        settings: preview.inspector.settings
        reader: preview.inspector.captions.previewReader
        sourceText: preview.inspector.previewSourceText
        sourceLanguage: preview.inspector.previewSourceLanguage
        translationText: preview.inspector.previewTranslationText
        Accessible.ignored: true
    }
}
