import QtQuick
import Lumaphone.Controls
import Lumaphone.Floating
import Lumaphone.Texts

/// The content of the caption panel: the newest caption, or the lines that somebody reads, on a translucent card. Nothing in it
/// moves the window; that is the panel's task.
Item {
    id: view

    required property LumaphoneSettings settings
    /// None where only one caption is ever shown.
    property FloatingCaptionReader reader: null
    property string sourceText
    property string translationText
    /// The raw value of the source's language, whose glyphs it is drawn with.
    property string sourceLanguage
    /// Whether a pointer can do something with it.
    property bool isInteractive: false

    readonly property floatingCaptionStyle style: captionLook.style
    readonly property bool isReading: reader !== null && reader.isOn
    readonly property bool isQuiet: reader !== null && reader.isQuiet
    /// The height in which nothing would be left out.
    readonly property real wantedHeight: isReading ? lines.wantedHeight : pair.wantedHeight + 2 * style.verticalPadding
    readonly property bool isTooSmall: wantedHeight > height && !(isReading ? lines.isWhole : pair.isWhole)

    /// The user wants the panel to be so high.
    signal growWanted(wanted: real)

    implicitWidth: 820
    implicitHeight: 180
    Accessible.role: Accessible.StaticText
    Accessible.name: isQuiet ? "" : isReading ? lines.shownText : pair.shownText

    FloatingCaptionLook {
        id: captionLook

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
        opacity: stack.opacity
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
        opacity: view.isQuiet ? 0 : 1

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.quick
            }
        }

        Item {
            id: middle

            readonly property real available: Math.max(0, parent.width - 2 * view.style.horizontalPadding)

            width: Math.round(available * view.style.lineWidth)
            height: parent.height
            x: view.style.horizontalPadding + Math.round((available - width) / 2)

            CaptionPair {
                id: pair

                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                visible: !view.isReading
                style: view.style
                room: captionLook.roomIn(view.height, leastSourceHeight, leastTranslationHeight)
                sourceText: view.style.sourceLine
                sourceLanguage: view.sourceLanguage
                translationText: view.translationText
            }

            ReadingLines {
                id: lines

                anchors.fill: parent
                visible: view.isReading
                style: view.style
                look: captionLook
                rows: view.isReading ? view.reader.rows : null
            }
        }
    }

    HoverHandler {
        id: pointer

        enabled: view.isInteractive
    }

    WheelHandler {
        enabled: view.isInteractive && view.isReading
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => view.reader.turnWheel(event.angleDelta.y)
    }

    Row {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.unit
        spacing: Theme.half
        layoutDirection: Qt.RightToLeft

        PanelButton {
            objectName: "floatingCaption.newest"
            isOffered: view.isInteractive && view.isReading && view.reader.isHeld
            systemImage: "arrow.down"
            text: Texts.newestLines(view.reader?.waiting ?? 0)
            help: Texts.toNewestLine
            color: view.style.translationColor
            well: view.style.buttonColor
            onClicked: view.reader.follow()
        }

        PanelButton {
            objectName: "floatingCaption.hold"
            isOffered: view.isReading && pointer.hovered && !view.reader.isHeld
            systemImage: "pause.fill"
            help: Texts.holdCaptions
            color: view.style.translationColor
            well: view.style.buttonColor
            onClicked: view.reader.toggleHold()
        }
    }

    PanelButton {
        objectName: "floatingCaption.grow"
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.unit
        isOffered: view.isInteractive && view.isTooSmall
        systemImage: "arrow.up.left.and.arrow.down.right"
        help: Texts.growPanel
        color: view.style.translationColor
        well: view.style.buttonColor
        onClicked: view.growWanted(view.wantedHeight)
    }
}
