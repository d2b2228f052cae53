pragma Singleton
import QtQuick
import Lumaphone.Keys
import Lumaphone.Texts

/// Everything that keys do in the window. Its shortcuts are made from this table, and so is the list of them that people read. A row
/// that says two things has two commands, in the order of its words.
QtObject {
    id: table

    readonly property var groups: [
        {
            "name": "session",
            "title": Texts.menuCaptions,
            "rows": [
                {
                    "text": Texts.keyStartOrStop,
                    "commands": {
                        "startOrStop": ["Ctrl+Return", "Ctrl+Enter"]
                    }
                },
                {
                    "text": Texts.keyStartOrStopFreely,
                    "commands": {
                        "startOrStopFreely": ["Space"]
                    }
                },
                {
                    "text": Texts.keySave,
                    "commands": {
                        "save": ["Ctrl+S"]
                    }
                },
                {
                    "text": Texts.toggleFloatingCaptions,
                    "commands": {
                        "toggleFloatingCaptions": ["Ctrl+Shift+F"]
                    }
                }
            ]
        },
        {
            "name": "library",
            "title": Texts.library,
            "rows": [
                {
                    "text": Texts.searchRecords,
                    "commands": {
                        "searchLibrary": ["Ctrl+F"]
                    }
                },
                {
                    "text": Texts.saveEdits,
                    "commands": {
                        "saveEdits": ["Ctrl+S"]
                    }
                }
            ]
        },
        {
            "name": "window",
            "title": Texts.keysOfWindow,
            "rows": [
                {
                    "text": Texts.keySettings,
                    "commands": {
                        "openSettings": ["Ctrl+,"]
                    }
                },
                {
                    "text": Texts.keyList,
                    "commands": {
                        "openKeys": ["F1", "Ctrl+?"]
                    }
                },
                {
                    "text": Texts.keyClose,
                    "commands": {
                        "close": ["Ctrl+W", "Ctrl+Q"]
                    }
                }
            ]
        },
        {
            "name": "transcript",
            "title": Texts.justHeard,
            "rows": [
                {
                    "text": Texts.keyPage,
                    "commands": {
                        "pageUp": ["PgUp"],
                        "pageDown": ["PgDown"]
                    }
                },
                {
                    "text": Texts.keyEnd,
                    "commands": {
                        "first": ["Home"],
                        "newest": ["End"]
                    }
                }
            ]
        }
    ]

    /// The keys of a command, as a shortcut takes them.
    function keysOf(command: string): var {
        for (const group of table.groups) {
            for (const row of group.rows) {
                if (command in row.commands)
                    return row.commands[command];
            }
        }
        return [];
    }
    /// Which command of a group a key gives that is pressed with these modifiers; empty for none.
    function commandOf(group: string, key: int, modifiers: int): string {
        for (const row of table.groups.find(candidate => candidate.name === group).rows) {
            for (const command in row.commands) {
                if (KeySequences.contains(row.commands[command], key, modifiers))
                    return command;
            }
        }
        return "";
    }
    /// The first keys of a command as people read them.
    function labelOf(command: string): string {
        return KeySequences.labels(table.keysOf(command))[0];
    }
    /// All keys of a row as people read them.
    function labelsOf(row: var): var {
        return KeySequences.labels([].concat(...Object.values(row.commands)));
    }
}
