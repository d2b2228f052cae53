import QtQuick
import Lumaphone.Keys

/// The shortcut of a command of the KeyTable.
Shortcut {
    required property string command

    sequences: KeyTable.keysOf(command)
    autoRepeat: false
}
