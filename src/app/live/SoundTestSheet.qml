import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Live
import Lumaphone.Texts

/// The test of sound: what is listened to, how loud it is, and what to do when nothing comes.
Sheet {
    id: sheet

    required property SoundTestModel test
    readonly property color tone: !test ? Theme.textSoft : test.hasFailed ? Theme.danger : test.isWithoutSound ? Theme.warning
        : test.hasHeard ? Theme.success : Theme.textSecondary

    objectName: "soundTest"
    width: 480
    title: Texts.soundTest
    subtitle: Texts.soundTestSubtitle
    systemImage: "waveform.circle.fill"
    initialFocus: done
    onAboutToShow: sheet.test.open()
    onAboutToHide: sheet.test.close()

    Connections {
        target: sheet.test

        function onEnded(): void {
            sheet.close();
        }
    }

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 72
        radius: Theme.radius
        color: Theme.well

        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: Theme.space
            anchors.rightMargin: Theme.space
            spacing: Theme.gap

            Symbol {
                name: sheet.test?.symbol ?? ""
                size: 20
            }

            UiText {
                objectName: "soundTest.device"
                Layout.fillWidth: true
                text: sheet.test?.device ?? ""
                elide: Text.ElideRight
            }

            SoundLevel {
                objectName: "soundTest.level"
                level: sheet.test?.level ?? 0
                highestLevel: sheet.test?.highestLevel ?? 6
                barWidth: 6
                barHeight: 32
                color: Theme.success
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        // Of two lines, so that nothing moves when sound comes.
        Layout.preferredHeight: 44
        spacing: Theme.unit + 2

        Symbol {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 2
            name: !sheet.test ? "" : sheet.test.hasFailed ? "exclamationmark.triangle.fill" : sheet.test.isWithoutSound ? "speaker.slash.fill"
                : sheet.test.hasHeard ? "checkmark.circle.fill" : "info.circle"
            size: 18
            color: sheet.tone
        }

        UiText {
            objectName: "soundTest.message"
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            text: sheet.test?.message ?? ""
            color: sheet.tone
            wrapMode: Text.Wrap
            lineHeight: 1.35
            maximumLineCount: 4
            elide: Text.ElideRight
            Accessible.role: Accessible.AlertMessage
        }
    }

    footer: [
        Item {
            Layout.fillWidth: true
        },
        PrimaryButton {
            id: done

            objectName: "soundTest.done"
            text: Texts.done
            onClicked: sheet.close()
        }
    ]
}
