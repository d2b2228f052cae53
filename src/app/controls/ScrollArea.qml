import QtQuick
import QtQuick.Templates as T
import Lumaphone.Controls

/// Something to read that may be longer than its place: a well that the wheel and the keyboard scroll.
Rectangle {
    id: area

    default property alias content: page.data
    /// Before the names of its parts.
    property string name
    /// What it is, for those who cannot see it.
    required property string title
    /// For the keyboard.
    readonly property alias flickable: flickable

    function rewind(): void {
        flickable.contentY = 0;
    }

    implicitHeight: flickable.contentHeight + 2 * Theme.unit
    radius: Theme.radius
    color: Theme.well

    Flickable {
        id: flickable

        readonly property real page: flickable.height - Theme.wide

        function scrollBy(distance: real): void {
            const end = Math.max(0, flickable.contentHeight - flickable.height);
            flickable.contentY = Math.max(0, Math.min(flickable.contentY + distance, end));
        }

        objectName: area.name + ".flickable"
        anchors.fill: parent
        anchors.topMargin: Theme.unit
        anchors.bottomMargin: Theme.unit
        contentHeight: page.childrenRect.height + 2 * Theme.half
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        activeFocusOnTab: true
        T.ScrollBar.vertical: AppScrollBar {}
        Accessible.role: Accessible.Document
        Accessible.name: area.title

        Keys.onPressed: event => {
            const distances = {
                [Qt.Key_Up]: -Theme.wide,
                [Qt.Key_Down]: Theme.wide,
                [Qt.Key_PageUp]: -flickable.page,
                [Qt.Key_PageDown]: flickable.page,
                [Qt.Key_Home]: -flickable.contentHeight,
                [Qt.Key_End]: flickable.contentHeight
            };
            if (event.key in distances) {
                flickable.scrollBy(distances[event.key]);
                event.accepted = true;
            }
        }

        Item {
            id: page

            x: Theme.gap
            y: Theme.half
            width: flickable.width - 2 * Theme.gap
        }
    }
}
