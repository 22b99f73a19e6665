import QtQuick
import QtQuick.Templates as T
import Zentrill

// A list with one tab stop: the arrow keys, Page Up and Down, Home and End move through the rows, and only
// the rows in sight exist.
ListView {
    id: list

    property real sideMargin: 20

    // The row that has the focus is marked for those who use the keyboard; a click marks itself.
    required property bool marksFocus

    leftMargin: sideMargin
    rightMargin: sideMargin
    topMargin: 14
    bottomMargin: 14
    spacing: 6
    clip: true
    activeFocusOnTab: true
    keyNavigationEnabled: true
    boundsBehavior: Flickable.StopAtBounds
    flickDeceleration: 4000
    maximumFlickVelocity: 6000
    pixelAligned: true
    reuseItems: true
    cacheBuffer: 240
    highlightMoveDuration: 0
    currentIndex: -1

    readonly property real rowWidth: width - leftMargin - rightMargin

    function takeFocus(row: int) {
        currentIndex = row;
        forceActiveFocus(Qt.MouseFocusReason);
    }

    function moveTo(row: int) {
        if (count === 0)
            return;
        currentIndex = Math.max(0, Math.min(count - 1, row));
        positionViewAtIndex(currentIndex, ListView.Contain);
    }

    // Entered for the first time, the list stands at the first row in sight.
    onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0)
        currentIndex = Math.max(0, indexAt(1, contentY + topMargin))

    Keys.onPressed: event => {
        const page = Math.max(1, Math.floor(height / (currentItem ? currentItem.height + spacing : 60)) - 1);
        switch (event.key) {
        case Qt.Key_PageDown:
            moveTo(currentIndex + page);
            break;
        case Qt.Key_PageUp:
            moveTo(currentIndex - page);
            break;
        case Qt.Key_Home:
            moveTo(0);
            break;
        case Qt.Key_End:
            moveTo(count - 1);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    T.ScrollBar.vertical: ThinScrollBar {}
}
