import QtQuick
import Lumaphone.Controls
import Lumaphone.Floating

/// A source text and its translation, one above the other, in the room that both have.
Item {
    id: pair

    required property floatingCaptionStyle style
    required property captionRoom room
    property string sourceText
    /// The raw value of the source's language, whose glyphs it is drawn with.
    property string sourceLanguage
    property string translationText
    property bool showsSource: style.showsSourceText
    property bool showsTranslation: style.showsTranslationText
    /// How far texts shrink before they lose words.
    property real minimumSourceFontSize: style.minimumSourceFontSize
    property real minimumTranslationFontSize: style.minimumTranslationFontSize
    property int maximumSourceLines: style.maximumSourceLines
    property int maximumTranslationLines: style.maximumTranslationLines

    readonly property real leastSourceHeight: showsSource ? source.leastHeight : 0
    readonly property real leastTranslationHeight: showsTranslation ? translation.leastHeight : 0
    readonly property real wantedHeight: (showsSource ? source.wantedHeight : 0) + (showsTranslation ? translation.wantedHeight : 0)
    readonly property bool isWhole: showsSource === source.visible && (!showsSource || source.isWhole) && (!showsTranslation
        || translation.isWhole)

    readonly property bool isSourceShown: showsSource && room.showsSource
    /// What is read there, from the top to the bottom.
    readonly property string shownText: {
        const texts = [isSourceShown ? sourceText : "", showsTranslation ? translationText : ""];
        return (style.isTranslationFirst ? texts.reverse() : texts).filter(text => text !== "").join("\n");
    }

    implicitHeight: (source.visible ? source.height : 0) + (translation.visible ? translation.height : 0)

    CaptionLine {
        id: source

        objectName: "floatingCaption.source"
        visible: pair.isSourceShown
        y: pair.style.isTranslationFirst && translation.visible ? translation.height : 0
        width: pair.width
        text: pair.sourceText
        fontSize: pair.style.sourceFontSize
        minimumFontSize: pair.minimumSourceFontSize
        maximumLines: pair.maximumSourceLines
        lineSpacing: pair.style.lineSpacing
        availableHeight: pair.room.sourceHeight
        color: pair.style.sourceColor
        font.family: pair.style.fontFamily !== "" ? pair.style.fontFamily : Theme.fontFamilyOf(pair.sourceLanguage)
        font.weight: Font.Medium
    }

    CaptionLine {
        id: translation

        objectName: "floatingCaption.translation"
        visible: pair.showsTranslation
        y: !pair.style.isTranslationFirst && source.visible ? source.height : 0
        width: pair.width
        // A blank keeps the line's height.
        text: pair.translationText !== "" ? pair.translationText : " "
        fontSize: pair.style.translationFontSize
        minimumFontSize: pair.minimumTranslationFontSize
        maximumLines: pair.maximumTranslationLines
        lineSpacing: pair.style.lineSpacing
        availableHeight: pair.room.textHeight - (source.visible ? source.height : 0)
        color: pair.style.translationColor
        font.family: pair.style.fontFamily !== "" ? pair.style.fontFamily : Theme.fontFamily
        font.weight: Font.Bold
    }
}
