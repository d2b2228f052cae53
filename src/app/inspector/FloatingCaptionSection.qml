import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Inspector
import Lumaphone.Texts

/// How the floating captions look and how they are read, with a preview.
InspectorSection {
    id: section

    required property InspectorModel inspector
    readonly property FloatingCaptionSettingsModel captions: inspector.captions

    title: Texts.floatingCaptions

    PickerRow {
        objectName: "inspector.theme"
        Layout.fillWidth: true
        title: Texts.theme
        systemImage: "circle.lefthalf.filled"
        model: section.inspector.captionThemes
        selection: section.inspector.captionTheme
        onPicked: value => section.inspector.captionTheme = value
    }

    PickerRow {
        objectName: "inspector.display"
        Layout.fillWidth: true
        title: Texts.display
        systemImage: "rectangle.split.1x2"
        model: section.inspector.captionDisplayModes
        selection: section.inspector.captionDisplayMode
        onPicked: value => section.inspector.captionDisplayMode = value
    }

    PickerRow {
        objectName: "inspector.order"
        Layout.fillWidth: true
        title: Texts.order
        systemImage: "chevron.up.chevron.down"
        model: section.captions.orders
        selection: section.captions.order
        onPicked: value => section.captions.order = value
    }

    PickerRow {
        objectName: "inspector.font"
        Layout.fillWidth: true
        title: Texts.font
        systemImage: "textformat"
        model: section.captions.fonts
        selection: section.captions.font
        onPicked: value => section.captions.font = value
    }

    LabeledSlider {
        objectName: "inspector.fontSize"
        Layout.fillWidth: true
        Layout.topMargin: Theme.half
        title: Texts.fontSize
        systemImage: "textformat.size"
        valueText: section.inspector.fontSizeText
        from: section.inspector.minimumFontSize
        to: section.inspector.maximumFontSize
        stepSize: 1
        value: section.inspector.captionFontSize
        onMoved: value => section.inspector.captionFontSize = value
    }

    LabeledSlider {
        objectName: "inspector.opacity"
        Layout.fillWidth: true
        title: Texts.opacity
        systemImage: "drop.halffull"
        valueText: section.inspector.opacityText
        from: 0
        to: 1
        stepSize: 0.01
        value: section.inspector.captionOpacity
        onMoved: value => section.inspector.captionOpacity = value
    }

    LabeledSlider {
        objectName: "inspector.lineSpacing"
        Layout.fillWidth: true
        title: Texts.lineSpacing
        systemImage: "arrow.up.and.down.text.horizontal"
        valueText: section.captions.lineSpacingText
        from: 0.8
        to: 2
        stepSize: 0.1
        value: section.captions.lineSpacing
        onMoved: value => section.captions.lineSpacing = value
    }

    LabeledSlider {
        objectName: "inspector.lineWidth"
        Layout.fillWidth: true
        title: Texts.lineWidth
        systemImage: "arrow.left.and.right"
        valueText: section.captions.lineWidthText
        from: 0.3
        to: 1
        stepSize: 0.05
        value: section.captions.lineWidth
        onMoved: value => section.captions.lineWidth = value
    }

    PickerRow {
        objectName: "inspector.lines"
        Layout.fillWidth: true
        Layout.topMargin: Theme.half
        title: Texts.readingMode
        systemImage: "text.alignleft"
        model: section.captions.lineCounts
        selection: section.captions.lineCount
        onPicked: value => section.captions.lineCount = value
    }

    UiText {
        Layout.fillWidth: true
        visible: section.captions.lineCount !== "0"
        text: Texts.readingModeHint
        font.pixelSize: Theme.small
        color: Theme.textSecondary
        lineHeight: 1.3
        wrapMode: Text.Wrap
    }

    PickerRow {
        objectName: "inspector.silence"
        Layout.fillWidth: true
        title: Texts.inSilence
        systemImage: "speaker.slash.fill"
        model: section.captions.silences
        selection: section.captions.silence
        onPicked: value => section.captions.silence = value
    }

    FloatingCaptionPreview {
        Layout.fillWidth: true
        Layout.topMargin: Theme.half
        inspector: section.inspector
    }
}
