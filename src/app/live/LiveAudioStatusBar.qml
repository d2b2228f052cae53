import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live

/// What the session is doing, in one line.
RowLayout {
    id: bar

    required property LiveSessionModel session

    spacing: Theme.unit

    Symbol {
        name: "waveform.circle.fill"
        size: 18
        color: bar.session.hasFailed ? Theme.danger : bar.session.isWithoutSound ? Theme.warning
            : bar.session.isRunning ? Theme.accent : Theme.textSoft
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
}
