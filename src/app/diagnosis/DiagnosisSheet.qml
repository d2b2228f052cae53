pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Lumaphone.Controls
import Lumaphone.Diagnosis
import Lumaphone.Texts

/// What the program can do on this machine, what it lacks and how to get it.
Sheet {
    id: sheet

    required property DiagnosisModel diagnosis

    objectName: "diagnosis"
    width: 640
    title: Texts.diagnosisTitle
    subtitle: Texts.diagnosisSubtitle
    systemImage: "checkmark.seal.fill"
    initialFocus: area.flickable
    onAboutToShow: sheet.diagnosis.run()
    onClosed: area.rewind()

    ScrollArea {
        id: area

        name: "diagnosis"
        title: sheet.title
        Layout.fillWidth: true
        Layout.fillHeight: true
        // The sheet does not jump when the answers are there.
        Layout.preferredHeight: 560

        Column {
            width: parent?.width ?? 0
            spacing: Theme.space

            UiText {
                visible: groups.count === 0
                text: Texts.checking
                color: Theme.textSecondary
            }

            Repeater {
                id: groups

                model: sheet.diagnosis?.groups ?? []

                Column {
                    id: group

                    required property var modelData
                    required property int index

                    width: parent?.width ?? 0
                    spacing: Theme.half

                    UiText {
                        width: parent.width
                        text: group.modelData.title
                        font.bold: true
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }

                    Repeater {
                        model: group.modelData.findings

                        FindingRow {
                            required property var modelData
                            required property int index

                            objectName: "diagnosis." + group.index + "." + index
                            width: parent?.width ?? 0
                            finding: modelData
                        }
                    }
                }
            }
        }
    }

    footer: [
        ActionButton {
            objectName: "diagnosis.copy"
            text: copied.running ? Texts.copied : Texts.copy
            systemImage: "doc.on.doc"
            enabled: groups.count > 0
            onClicked: {
                sheet.diagnosis.copy();
                copied.restart();
            }

            Timer {
                id: copied

                interval: 2000
            }
        },
        ActionButton {
            objectName: "diagnosis.again"
            text: sheet.diagnosis?.isRunning ? Texts.checking : Texts.checkAgain
            systemImage: "arrow.triangle.2.circlepath"
            enabled: !sheet.diagnosis?.isRunning
            onClicked: sheet.diagnosis.run()
        },
        Item {
            Layout.fillWidth: true
        },
        PrimaryButton {
            objectName: "diagnosis.close"
            text: Texts.close
            onClicked: sheet.close()
        }
    ]
}
