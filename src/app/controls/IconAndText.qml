import QtQuick
import Lumaphone.Controls

/// A symbol beside a text, as one decoration of a control that says the same itself.
Item {
    id: pair

    property string systemImage
    property string text
    property color color: Theme.text
    property color symbolColor: color
    property font font
    property int symbolSize: 18
    property int spacing: Theme.unit
    /// Keeps the symbol's place where there is none.
    property bool reservesSymbol: false
    property bool isCentred: false

    implicitWidth: label.implicitWidth + (symbol.visible ? symbol.width + spacing : 0)
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.verticalCenter: parent.verticalCenter
        x: pair.isCentred ? Math.round((pair.width - width) / 2) : 0
        spacing: pair.spacing

        Symbol {
            id: symbol

            anchors.verticalCenter: parent.verticalCenter
            visible: pair.systemImage !== "" || pair.reservesSymbol
            name: pair.systemImage
            color: pair.symbolColor
            size: pair.symbolSize
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: pair.isCentred ? implicitWidth : Math.min(implicitWidth, Math.max(0, pair.width - x))
            text: pair.text
            font: pair.font
            color: pair.color
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
