import QtQuick
import Lumaphone.Controls
import Lumaphone.Live

/// What is selected and found in a text, drawn behind it.
MarkedPlaces {
    id: behind

    required property Text of

    width: behind.of.width
    text: behind.of.text
    font: behind.of.font
    lineHeight: behind.of.lineHeight
    selectedColor: Theme.selection
    foundColor: Theme.found
    lookedAtColor: Theme.foundHere
}
