pragma Singleton
import QtQuick
import Lumaphone.Controls

/// Colours, sizes and fonts of the whole interface, light or dark. Lengths are in pixels of the interface and keep to
/// a grid of eight.
QtObject {
    /// Follows the desktop; bound by the root of the program.
    property bool isDark: false

    // Surfaces, from the back to the front.
    readonly property color window: isDark ? "#16171b" : "#f3f3f6"
    readonly property color surface: isDark ? "#1f2025" : "#ffffff"
    readonly property color raised: isDark ? "#26272d" : "#ffffff"
    readonly property color field: isDark ? "#191a1e" : "#ffffff"
    /// Behind chips, pickers and the unselected parts of switchers.
    readonly property color well: isDark ? "#303139" : "#efeff3"
    readonly property color wellHovered: isDark ? "#3a3b45" : "#e5e5eb"
    readonly property color wellPressed: isDark ? "#454651" : "#dadae2"
    readonly property color hairline: isDark ? "#363740" : "#e2e2e8"
    readonly property color fieldBorder: isDark ? "#4a4b55" : "#c9c9d2"
    readonly property color shade: isDark ? "#99000000" : "#4d15161c"
    readonly property color shadow: isDark ? "#66000000" : "#2615161c"

    // Texts. Each is legible on every surface above.
    readonly property color text: isDark ? "#f4f4f7" : "#191a20"
    readonly property color textSecondary: isDark ? "#b3b3be" : "#555562"
    /// For what may still change: softer than the rest and still legible.
    readonly property color textSoft: isDark ? "#a2a2af" : "#666673"
    readonly property color textDisabled: isDark ? "#777883" : "#8f8f9b"

    readonly property color accent: isDark ? "#8f9dff" : "#4356dd"
    readonly property color accentHovered: isDark ? "#a0acff" : "#394bcb"
    readonly property color accentPressed: isDark ? "#7d8cf2" : "#3041b6"
    readonly property color accentContrast: isDark ? "#14151c" : "#ffffff"
    readonly property color accentWell: isDark ? "#2a2e4b" : "#e8eafc"
    readonly property color accentText: isDark ? "#aab4ff" : "#3b4dd0"

    readonly property color success: isDark ? "#62d19b" : "#17724a"
    readonly property color successWell: isDark ? "#1b3329" : "#e2f3ea"
    readonly property color warning: isDark ? "#efbb5e" : "#855700"
    readonly property color warningWell: isDark ? "#392f1b" : "#fbf0d9"
    readonly property color danger: isDark ? "#ff8d85" : "#bd2b26"
    readonly property color dangerWell: isDark ? "#3f2325" : "#fbe6e5"

    // Behind text that the reader has marked.
    readonly property color selection: isDark ? "#3d4683" : "#cdd4fb"
    readonly property color found: isDark ? "#4a3f1f" : "#fdf0c4"
    readonly property color foundHere: isDark ? "#7d631a" : "#ffd665"

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

    readonly property int quick: 120

    /// `language` is the raw value of a source language, such as "japanese".
    function fontFamilyOf(language: string): string {
        return LanguageFonts.familyOf(language);
    }
}
