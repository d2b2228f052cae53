import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Models

/// Something that works offline, as a new user sees it: with its licence while it is not here.
ColumnLayout {
    id: row

    required property string title
    required property string statusText
    required property string installTitle
    required property string licenceText
    required property bool isReady
    required property bool isInstallable
    required property bool isInstalling
    required property bool isError
    required property double progress

    signal wanted
    signal cancelled

    spacing: 0

    ModelRow {
        objectName: row.objectName + ".model"
        Layout.fillWidth: true
        title: row.title
        statusText: row.statusText
        installTitle: row.installTitle
        isReady: row.isReady
        isInstallable: row.isInstallable
        isInstalling: row.isInstalling
        isError: row.isError
        progress: row.progress
        // What is here already is managed in the inspector.
        isRemovable: false
        hasLicence: false
        onWanted: row.wanted()
        onCancelled: row.cancelled()
    }

    UiText {
        objectName: row.objectName + ".licence"
        Layout.fillWidth: true
        Layout.leftMargin: 18 + Theme.unit
        Layout.topMargin: 2
        visible: row.isInstallable && !row.isReady && text !== ""
        text: row.licenceText
        font.pixelSize: Theme.caption
        color: Theme.textSoft
        wrapMode: Text.Wrap
    }
}
