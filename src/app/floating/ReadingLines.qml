pragma ComponentBehavior: Bound

import QtQuick
import Lumaphone.Controls
import Lumaphone.Floating

/// The lines that somebody reads, the newest at the bottom, all in one size. A line that has no room as a whole is not shown.
Item {
    id: reading

    required property floatingCaptionStyle style
    required property FloatingCaptionLook look
    required property ReadingRows rows

    readonly property captionRoom room: look.roomIn(height, style.wantsSourceText ? sourceSample.leastHeight : 0,
        style.showsTranslationText ? translationSample.leastHeight : 0)
    readonly property real wantedHeight: column.implicitHeight + 2 * style.verticalPadding
    /// What is read there, from the top to the bottom.
    readonly property string shownText: {
        const texts = [];
        for (let row = 0; row < lines.count; ++row) {
            const line = lines.itemAt(row) as CaptionPair;
            if (line?.opacity > 0)
                texts.push(line.shownText);
        }
        return texts.join("\n");
    }
    readonly property bool isWhole: column.implicitHeight <= room.textHeight

    CaptionLineFit {
        id: sourceSample

        text: " "
        fontFamily: reading.style.fontFamily !== "" ? reading.style.fontFamily : Theme.fontFamily
        fontWeight: Font.Medium
        minimumFontSize: reading.style.sourceFontSize
        lineSpacing: reading.style.lineSpacing
    }

    CaptionLineFit {
        id: translationSample

        text: " "
        fontFamily: sourceSample.fontFamily
        fontWeight: Font.Bold
        minimumFontSize: reading.style.translationFontSize
        lineSpacing: reading.style.lineSpacing
    }

    Column {
        id: column

        y: reading.height - reading.room.padding - height
        width: parent.width
        spacing: Math.round(reading.style.translationFontSize * reading.style.lineSpacing * 0.35)

        Repeater {
            id: lines

            model: reading.rows

            CaptionPair {
                required sourceText
                required sourceLanguage
                required translationText

                objectName: "floatingCaption.line"
                // Half a pixel is lost in rounding.
                opacity: column.y + y > -0.5 ? 1 : 0
                width: column.width
                style: reading.style
                room: reading.room
                showsSource: reading.style.wantsSourceText && sourceText !== ""
                minimumSourceFontSize: reading.style.sourceFontSize
                minimumTranslationFontSize: reading.style.translationFontSize
                maximumSourceLines: 99
                maximumTranslationLines: 99
            }
        }
    }
}
