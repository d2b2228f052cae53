pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Models
import Lumaphone.Texts

/// The models that make recognition and translation work without a network: which are there, and the others to install.
InspectorSection {
    id: section

    /// None where nothing can be installed.
    required property ModelOffer offer

    /// The user wants to remove a row, and has not confirmed it yet.
    signal removalWanted(row: int, title: string, consequences: string)
    /// The user wants to read the terms of a row.
    signal licenceWanted(title: string, text: string)

    title: Texts.offlineModels

    UiText {
        Layout.fillWidth: true
        text: Texts.offlineModelsHint
        font.pixelSize: Theme.small
        color: Theme.textSecondary
        wrapMode: Text.Wrap
    }

    Repeater {
        model: section.offer?.models ?? null

        ModelRow {
            required property int index
            required property string removalText

            objectName: "models." + index
            Layout.fillWidth: true
            Layout.topMargin: Theme.half
            onWanted: section.offer.want(index)
            onCancelled: section.offer.stop(index)
            onRemoved: section.removalWanted(index, title, removalText)
            onLicenceWanted: section.licenceWanted(title, section.offer.licence(index))
        }
    }
}
