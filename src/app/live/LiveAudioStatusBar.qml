import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

/// What the session is doing, in one line, and how loud it is; before a session, whether there is sound can be tested.
RowLayout {
    id: bar

    required property LiveSessionModel session
    /// Whether the sound can be tested now.
    property bool canTestSound: false

    signal soundTestWanted

    spacing: Theme.unit

    Symbol {
        name: "waveform.circle.fill"
        size: 18
        color: bar.session.hasFailed ? Theme.danger : bar.session.isWithoutSound ? Theme.warning
            : bar.session.isRunning ? Theme.accent : Theme.textSoft
    }

    SoundLevel {
        objectName: "status.level"
        visible: bar.session.isRunning
        level: bar.session.soundLevel
    }

    UiText {
        objectName: "status"
        Layout.fillWidth: true
        text: bar.session.status
        font.pixelSize: Theme.small
        color: Theme.textSecondary
        elide: Text.ElideRight
        Accessible.role: Accessible.StatusBar
    }

    ActionButton {
        objectName: "status.testSound"
        visible: bar.canTestSound
        implicitHeight: 24
        isCompact: true
        kind: ActionButton.Kind.Quiet
        text: Texts.soundTest
        help: Texts.soundTestHelp
        onClicked: bar.soundTestWanted()
    }
}
