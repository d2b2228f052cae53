pragma Singleton
import QtQuick
import Lumaphone.Controls

/// Colours, sizes and fonts of the whole interface, light or dark. Lengths are in pixels of the interface and keep to
/// a grid of eight.
QtObject {
    // These follow the desktop; bound by the root of the program.
    property bool isDark: false
    /// The desktop's own accent; transparent where it has none.
    property color desktopAccent: "transparent"
    property bool isHighContrast: false
    property bool isMotionReduced: false

    /// How far texts stand out at least.
    readonly property real legibleRatio: isHighContrast ? 7 : 4.5

    // Surfaces, from the back to the front.
    readonly property color window: isDark ? "#16171b" : "#f3f3f6"
    readonly property color surface: isDark ? "#1f2025" : "#ffffff"
    readonly property color raised: isDark ? "#26272d" : "#ffffff"
    readonly property color field: isDark ? "#191a1e" : "#ffffff"
    /// Behind chips, pickers and the unselected parts of switchers.
    readonly property color well: isDark ? "#303139" : "#efeff3"
    readonly property color wellHovered: isDark ? "#3a3b45" : "#e5e5eb"
    readonly property color wellPressed: isDark ? "#454651" : "#dadae2"
    readonly property color hairline: isHighContrast ? fieldBorder : isDark ? "#363740" : "#e2e2e8"
    readonly property color fieldBorder: isHighContrast ? (isDark ? "#a9aab6" : "#5b5c68") : isDark ? "#4a4b55" : "#c9c9d2"
    readonly property color shade: isDark ? "#99000000" : "#4d15161c"
    readonly property color shadow: isDark ? "#66000000" : "#2615161c"

    // Texts. Each is legible on every surface above.
    readonly property color text: isHighContrast ? (isDark ? "#ffffff" : "#000000") : isDark ? "#f4f4f7" : "#191a20"
    readonly property color textSecondary: isHighContrast ? (isDark ? "#e6e6ec" : "#24252c") : isDark ? "#b3b3be" : "#555562"
    /// For what may still change: softer than the rest and still legible.
    readonly property color textSoft: isHighContrast ? (isDark ? "#d2d2da" : "#33343d") : isDark ? "#a2a2af" : "#666673"
    readonly property color textDisabled: isHighContrast ? (isDark ? "#a9aab6" : "#5b5c68") : isDark ? "#777883" : "#8f8f9b"

    // The program's own accent, unless the desktop has one or wants more contrast.
    readonly property bool isOwnAccent: desktopAccent.a === 0 && !isHighContrast
    readonly property color ownAccent: isDark ? "#8f9dff" : "#4356dd"
    readonly property accentColors madeAccent: AccentPalette.colors(desktopAccent.a === 0 ? ownAccent : desktopAccent, isDark ? raised : window,
        accentContrast, legibleRatio)
    readonly property color accent: isOwnAccent ? ownAccent : madeAccent.accent
    readonly property color accentHovered: !isOwnAccent ? madeAccent.hovered : isDark ? "#a0acff" : "#394bcb"
    readonly property color accentPressed: !isOwnAccent ? madeAccent.pressed : isDark ? "#7d8cf2" : "#3041b6"
    readonly property color accentContrast: isDark ? "#14151c" : "#ffffff"
    readonly property color accentWell: !isOwnAccent ? madeAccent.well : isDark ? "#2a2e4b" : "#e8eafc"
    readonly property color accentText: !isOwnAccent ? madeAccent.text : isDark ? "#aab4ff" : "#3b4dd0"

    readonly property color success: isHighContrast ? (isDark ? "#98efc3" : "#0a4a2d") : isDark ? "#62d19b" : "#17724a"
    readonly property color successWell: isDark ? "#1b3329" : "#e2f3ea"
    readonly property color warning: isHighContrast ? (isDark ? "#ffdb9a" : "#573900") : isDark ? "#efbb5e" : "#855700"
    readonly property color warningWell: isDark ? "#392f1b" : "#fbf0d9"
    readonly property color danger: isHighContrast ? (isDark ? "#ffc6c1" : "#86110d") : isDark ? "#ff8d85" : "#bd2b26"
    readonly property color dangerWell: isDark ? "#3f2325" : "#fbe6e5"

    // Behind text that the reader has marked.
    readonly property color selection: isDark ? "#3d4683" : "#cdd4fb"
    readonly property color found: isDark ? "#4a3f1f" : "#fdf0c4"
    readonly property color foundHere: isDark ? (isHighContrast ? "#665010" : "#7d631a") : "#ffd665"

    // The grid.
    readonly property int half: 4
    readonly property int unit: 8
    readonly property int gap: 12
    readonly property int space: 16
    readonly property int margin: 24
    readonly property int wide: 32

    readonly property int radiusSmall: 6
    readonly property int radius: 10
    readonly property int radiusLarge: 16

    readonly property int controlHeight: 36
    readonly property int controlHeightSmall: 32

    // Type sizes.
    readonly property int caption: 12
    readonly property int small: 13
    readonly property int body: 14
    readonly property int title: 16
    readonly property int heading: 20

    readonly property string fontFamily: LanguageFonts.familyOf("")

    /// Milliseconds of what fades or slides; none for those who do not want to see it move.
    readonly property int quick: isMotionReduced ? 0 : 120

    /// `language` is the raw value of a source language, such as "japanese".
    function fontFamilyOf(language: string): string {
        return LanguageFonts.familyOf(language);
    }
}
