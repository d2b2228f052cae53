import Lumaphone.Controls
import Lumaphone.Keys
import Lumaphone.Live
import Lumaphone.Texts

/// What can be done with one line of the transcript, and with what is selected.
AppMenu {
    id: menu

    required property TranscriptModel transcript
    property int row: -1

    title: Texts.keyLineMenu

    signal findWanted

    AppMenuItem {
        objectName: "line.copy"
        systemImage: "doc.on.doc"
        text: Texts.copyLine
        keys: KeyTable.labelOf("copyLine")
        onTriggered: menu.transcript.copyLine(menu.row)
    }

    AppMenuItem {
        objectName: "line.copySource"
        text: Texts.copySource
        onTriggered: menu.transcript.copySource(menu.row)
    }

    AppMenuItem {
        objectName: "line.copyTranslation"
        text: Texts.copyTranslation
        enabled: menu.opened && menu.transcript.hasTranslation(menu.row)
        onTriggered: menu.transcript.copyTranslation(menu.row)
    }

    AppMenuSeparator {}

    AppMenuItem {
        objectName: "line.copySelection"
        text: Texts.copySelection
        keys: KeyTable.labelOf("copySelection")
        enabled: menu.transcript.hasSelection
        onTriggered: menu.transcript.copySelection()
    }

    AppMenuItem {
        objectName: "line.selectAll"
        text: Texts.selectAll
        keys: KeyTable.labelOf("selectAll")
        onTriggered: menu.transcript.selectAll()
    }

    AppMenuSeparator {}

    AppMenuItem {
        objectName: "line.find"
        systemImage: "magnifyingglass"
        text: Texts.find
        keys: KeyTable.labelOf("find")
        onTriggered: menu.findWanted()
    }
}
