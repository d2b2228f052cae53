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
                    "commands": [
                        {
                            "name": "startOrStop",
                            "keys": ["Ctrl+Return", "Ctrl+Enter"]
                        }
                    ]
                },
                {
                    "text": Texts.keyStartOrStopFreely,
                    "commands": [
                        {
                            "name": "startOrStopFreely",
                            "keys": ["Space"]
                        }
                    ]
                },
                {
                    "text": Texts.keySave,
                    "commands": [
                        {
                            "name": "save",
                            "keys": ["Ctrl+S"]
                        }
                    ]
                },
                {
                    "text": Texts.toggleFloatingCaptions,
                    "commands": [
                        {
                            "name": "toggleFloatingCaptions",
                            "keys": ["Ctrl+Shift+F"]
                        }
                    ]
                },
                {
                    "text": Texts.holdOrFollowCaptions,
                    "commands": [
                        {
                            "name": "holdFloatingCaptions",
                            "keys": ["Ctrl+Shift+P"]
                        }
                    ]
                }
            ]
        },
        {
            "name": "library",
            "title": Texts.library,
            "rows": [
                {
                    "text": Texts.searchRecords,
                    "commands": [
                        {
                            "name": "searchLibrary",
                            "keys": ["Ctrl+F"]
                        }
                    ]
                },
                {
                    "text": Texts.saveEdits,
                    "commands": [
                        {
                            "name": "saveEdits",
                            "keys": ["Ctrl+S"]
                        }
                    ]
                }
            ]
        },
        {
            "name": "glossary",
            "title": Texts.glossary,
            "rows": [
                {
                    "text": Texts.keyUndoDeletion,
                    "commands": [
                        {
                            "name": "undoDeletion",
                            "keys": ["Ctrl+Z"]
                        }
                    ]
                }
            ]
        },
        {
            "name": "window",
            "title": Texts.keysOfWindow,
            "rows": [
                {
                    "text": Texts.keySettings,
                    "commands": [
                        {
                            "name": "openSettings",
                            "keys": ["Ctrl+,"]
                        }
                    ]
                },
                {
                    "text": Texts.keyList,
                    "commands": [
                        {
                            "name": "openKeys",
                            "keys": ["F1", "Ctrl+?"]
                        }
                    ]
                },
                {
                    "text": Texts.keyClose,
                    "commands": [
                        {
                            "name": "close",
                            "keys": ["Ctrl+W", "Ctrl+Q"]
                        }
                    ]
                }
            ]
        },
        {
            "name": "transcript",
            "title": Texts.justHeard,
            "rows": [
                {
                    "text": Texts.keyPage,
                    "commands": [
                        {
                            "name": "pageUp",
                            "keys": ["PgUp"]
                        },
                        {
                            "name": "pageDown",
                            "keys": ["PgDown"]
                        }
                    ]
                },
                {
                    "text": Texts.keyEnd,
                    "commands": [
                        {
                            "name": "first",
                            "keys": ["Home"]
                        },
                        {
                            "name": "newest",
                            "keys": ["End"]
                        }
                    ]
                },
                {
                    "text": Texts.keyLine,
                    "commands": [
                        {
                            "name": "previousLine",
                            "keys": ["Up"]
                        },
                        {
                            "name": "nextLine",
                            "keys": ["Down"]
                        }
                    ]
                },
                {
                    "text": Texts.keySelect,
                    "commands": [
                        {
                            "name": "selectUp",
                            "keys": ["Shift+Up"]
                        },
                        {
                            "name": "selectDown",
                            "keys": ["Shift+Down"]
                        }
                    ]
                },
                {
                    "text": Texts.selectAll,
                    "commands": [
                        {
                            "name": "selectAll",
                            "keys": ["Ctrl+A"]
                        }
                    ]
                },
                {
                    "text": Texts.copySelection,
                    "commands": [
                        {
                            "name": "copySelection",
                            "keys": ["Ctrl+C"]
                        }
                    ]
                },
                {
                    "text": Texts.copyLine,
                    "commands": [
                        {
                            "name": "copyLine",
                            "keys": ["Ctrl+Shift+C"]
                        }
                    ]
                },
                {
                    "text": Texts.keyLineMenu,
                    "commands": [
                        {
                            "name": "openLineMenu",
                            "keys": ["Menu", "Shift+F10"]
                        }
                    ]
                },
                {
                    "text": Texts.find,
                    "commands": [
                        {
                            "name": "find",
                            "keys": ["Ctrl+F"]
                        }
                    ]
                },
                {
                    "text": Texts.keyFound,
                    "commands": [
                        {
                            "name": "findNext",
                            "keys": ["F3"]
                        },
                        {
                            "name": "findPrevious",
                            "keys": ["Shift+F3"]
                        }
                    ]
                },
                {
                    "text": Texts.keyLeave,
                    "commands": [
                        {
                            "name": "leaveSelection",
                            "keys": ["Esc"]
                        }
                    ]
                }
            ]
        }
    ]

    /// The keys of a command, as a shortcut takes them.
    function keysOf(command: string): var {
        for (const group of table.groups) {
            for (const row of group.rows) {
                const found = row.commands.find(candidate => candidate.name === command);
                if (found)
                    return found.keys;
            }
        }
        return [];
    }
    /// Which command of a group a key gives that is pressed with these modifiers; empty for none.
    function commandOf(group: string, key: int, modifiers: int): string {
        for (const row of table.groups.find(candidate => candidate.name === group).rows) {
            const found = row.commands.find(candidate => KeySequences.contains(candidate.keys, key, modifiers));
            if (found)
                return found.name;
        }
        return "";
    }
    /// The first keys of a command as people read them.
    function labelOf(command: string): string {
        return KeySequences.labels(table.keysOf(command))[0];
    }
    /// All keys of a row as people read them.
    function labelsOf(row: var): var {
        return KeySequences.labels([].concat(...row.commands.map(command => command.keys)));
    }
}
