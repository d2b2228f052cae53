pragma ComponentBehavior: Bound

import QtQuick
import Lumaphone.Controls
import Lumaphone.Texts

/// The glossary terms that matched in a session.
FlowLayout {
    id: chips

    required property list<string> terms

    spacing: Theme.unit
    visible: terms.length > 0
    Accessible.role: Accessible.List
    Accessible.name: Texts.matchedTerms

    Repeater {
        model: chips.terms

        Chip {
            required property string modelData

            text: modelData
            systemImage: "text.book.closed"
            maximumWidth: chips.width
        }
    }
}
