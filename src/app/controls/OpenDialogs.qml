pragma Singleton
import QtQuick
import QtQuick.Templates as T

/// What is open over the window and waits for an answer: sheets, alerts and file dialogs, each of which tells it itself.
QtObject {
    property var all: []

    function note(dialog: QtObject, isOpen: bool): void {
        all = all.filter(other => other !== dialog).concat(isOpen ? [dialog] : []);
    }

    /// Where they lie on the desktop, over a window at that place; an empty rectangle for one that lies anywhere.
    function areas(windowX: int, windowY: int): var {
        return all.map(dialog => {
            const sheet = dialog as T.Popup;
            return sheet ? Qt.rect(windowX + sheet.x, windowY + sheet.y, sheet.width, sheet.height) : Qt.rect(0, 0, 0, 0);
        });
    }
}
