import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Texts

/// One thing that was looked at, and below it what to do about it.
RowLayout {
    id: row

    /// With "isProblem", "isAdvice", "isNeutral", "text" and "step".
    required property var finding
    readonly property string text: finding.text
    readonly property var look: {
        if (finding.isProblem)
            return [Texts.findingProblem, "exclamationmark.triangle.fill", Theme.danger];
        if (finding.isAdvice)
            return [Texts.findingAdvice, "info.circle", Theme.warning];
        if (finding.isNeutral)
            return ["", "minus.circle", Theme.textSecondary];
        return [Texts.findingFine, "checkmark.circle.fill", Theme.success];
    }

    spacing: Theme.unit
    Accessible.role: Accessible.StaticText
    Accessible.name: row.look[0] + Texts.followed(row.finding.text, row.finding.step)

    Symbol {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: 2
        name: row.look[1]
        size: 16
        color: row.look[2]
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2

        UiText {
            Layout.fillWidth: true
            text: row.finding.text
            font.pixelSize: Theme.small
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        UiText {
            Layout.fillWidth: true
            visible: text !== ""
            text: row.finding.step
            font.pixelSize: Theme.small
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
