import QtQuick
import Lumaphone.Controls
import Lumaphone.Floating

/// The content of the caption panel: the source line above its translation, on a translucent card. Nothing in it moves
/// the window; that is the panel's task.
Item {
    id: view

    required property LumaphoneSettings settings
    property string sourceText
    property string translationText
    /// The raw value of the source's language, whose glyphs it is drawn with.
    property string sourceLanguage

    readonly property floatingCaptionStyle style: look.style

    implicitWidth: 820
    implicitHeight: 180
    Accessible.role: Accessible.StaticText
    Accessible.name: (style.showsSourceText ? style.sourceLine + "\n" : "") + (style.showsTranslationText ? style.translationLine : "")

    FloatingCaptionLook {
        id: look

        settings: view.settings
        sourceText: view.sourceText
        translationText: view.translationText
        labelColor: Theme.text
        secondaryLabelColor: Theme.textSecondary
        windowBackgroundColor: Theme.window
        accentColor: Theme.accent
    }

    Rectangle {
        anchors.fill: parent
        radius: view.style.cornerRadius
        color: view.style.backgroundColor
        border.width: view.style.borderWidth
        border.color: view.style.borderColor
    }

    Shadow {
        anchors.fill: stack
        source: stack
        // The effect's radius is where its blur ends, at 3.33 deviations; a shadow's radius is two of them.
        radius: Math.round(view.style.shadowRadius / 2 * 3.33 - 1)
        samples: 2 * radius + 1
        verticalOffset: view.style.shadowOffset
        color: view.style.shadowColor
    }

    // As large as the panel, so that the shadow of the last line is not cut off.
    Item {
        id: stack

        anchors.fill: parent

        Column {
            id: lines

            anchors.verticalCenter: parent.verticalCenter
            x: view.style.horizontalPadding
            width: Math.max(0, parent.width - 2 * view.style.horizontalPadding)

            readonly property real available: Math.max(0, view.height - 2 * view.style.verticalPadding)

            CaptionLine {
                id: sourceLine

                objectName: "floatingCaption.source"
                visible: view.style.showsSourceText
                width: lines.width
                text: view.style.sourceLine
                language: view.sourceLanguage
                fontSize: view.style.sourceFontSize
                minimumFontSize: view.style.minimumSourceFontSize
                maximumLines: view.style.maximumSourceLines
                availableHeight: view.style.showsTranslationText ? lines.available * 0.4 : lines.available
                color: view.style.sourceColor
                font.weight: Font.Medium
            }

            CaptionLine {
                objectName: "floatingCaption.translation"
                visible: view.style.showsTranslationText
                width: lines.width
                text: view.style.translationLine
                fontSize: view.style.translationFontSize
                minimumFontSize: view.style.minimumTranslationFontSize
                maximumLines: view.style.maximumTranslationLines
                availableHeight: lines.available - (sourceLine.visible ? sourceLine.height : 0)
                color: view.style.translationColor
                font.weight: Font.Bold
            }
        }
    }
}
