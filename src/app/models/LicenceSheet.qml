pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumaphone

/// The terms of a model, to be read.
Sheet {
    id: sheet

    property string text

    objectName: "modelLicence"
    width: 600
    subtitle: "授權條款"
    systemImage: "text.book.closed"
    initialFocus: flickable
    onClosed: flickable.contentY = 0

    Rectangle {
        Layout.fillWidth: true
        Layout.fillHeight: true
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

            objectName: "modelLicence.flickable"
            anchors.fill: parent
            anchors.topMargin: Theme.unit
            anchors.bottomMargin: Theme.unit
            contentHeight: licence.implicitHeight + 2 * Theme.half
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            activeFocusOnTab: true
            T.ScrollBar.vertical: AppScrollBar {}

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

            UiText {
                id: licence

                objectName: "modelLicence.text"
                x: Theme.gap
                y: Theme.half
                width: flickable.width - 2 * Theme.gap
                text: sheet.text
                font.pixelSize: Theme.small
                color: Theme.textSecondary
                lineHeight: 1.3
                wrapMode: Text.Wrap
            }
        }
    }

    footer: [
        Item {
            Layout.fillWidth: true
        },
        PrimaryButton {
            objectName: "modelLicence.close"
            text: "關閉"
            onClicked: sheet.close()
        }
    ]
}
