import QtQuick
import QtQuick.Templates as T
import Zentrill

// A list with one tab stop: the arrow keys, Page Up and Down, Home and End move through the rows, and only
// the rows in sight exist. It scrolls for the wheel, the scroll bar, a finger and these keys; that a row is
// pressed or takes the focus moves nothing, so that the next press finds what the last one saw.
ListView {
    id: list

    property real sideMargin: 20

    // The row that has the focus is marked for those who use the keyboard; a click marks itself.
    readonly property bool marksFocus: KeyboardUse.current

    readonly property real rowWidth: width - leftMargin - rightMargin

    // The nearest row from `row` on, in steps of 1 or -1, at which the keyboard stops; -1 where there is none.
    property var stopFrom: (row, step) => row >= 0 && row < count ? row : -1

    // What the menu of a row offers, for `ContextMenu`; nothing, and the row has none.
    property var menuOf: row => []

    // Copies what a row stands for.
    property var copyOf: row => {}

    // Opens the menu of a row at a point of the window.
    function openMenu(row: int, place: point) {
        const entries = row < 0 ? [] : menuOf(row);
        if (entries.length === 0)
            return;
        takeFocus(row);
        menu.open(entries, place);
    }

    function takeFocus(row: int) {
        currentIndex = row;
        forceActiveFocus(Qt.MouseFocusReason);
    }

    // Moves to `row`, or to the next stop in that direction, and brings it into sight.
    function moveTo(row: int, step: int) {
        const within = Math.max(0, Math.min(count - 1, row));
        let stop = stopFrom(within, step);
        if (stop < 0)
            stop = stopFrom(within, -step);
        if (stop < 0)
            return;
        currentIndex = stop;
        // What stands before the first stop and after the last is not reached in another way.
        if (stopFrom(stop - 1, -1) < 0)
            positionViewAtBeginning();
        else if (stopFrom(stop + 1, 1) < 0) {
            positionViewAtEnd();
            scroll(bottomMargin); // The list itself leaves that out.
        }
        else
            positionViewAtIndex(stop, ListView.Contain);
    }

    // Stands at the first row that is wholly in sight.
    function enter() {
        // One of two places that are a gap apart lies in a row.
        const row = Math.max(0, indexAt(1, contentY), indexAt(1, contentY + spacing));
        const item = itemAtIndex(row);
        currentIndex = stopFrom(item && item.y < contentY && row < count - 1 ? row + 1 : row, 1);
    }

    // What is current after the rows have changed need not be a stop.
    function keepToStops() {
        if (currentIndex < 0 || stopFrom(currentIndex, 1) === currentIndex)
            return;
        const before = stopFrom(currentIndex, -1);
        currentIndex = before < 0 ? stopFrom(currentIndex, 1) : before;
    }

    function scroll(by: real) {
        const highest = originY - topMargin;
        const lowest = Math.max(highest, originY + contentHeight + bottomMargin - height);
        contentY = Math.max(highest, Math.min(lowest, contentY + by));
    }

    function openCurrentMenu() {
        if (currentItem)
            openMenu(currentIndex, currentItem.mapToItem(null, 48, currentItem.height - 12));
    }

    // What an assistive tool asks a row for.
    function openMenuOf(row: int) {
        takeFocus(row);
        openCurrentMenu();
    }

    leftMargin: sideMargin
    rightMargin: sideMargin
    topMargin: 14
    bottomMargin: 14
    spacing: 6
    clip: true
    activeFocusOnTab: true
    // Its own keys would move to where they lead, and its own wheel would roll on and take the next press for
    // one that stops it.
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false
    interactive: false
    boundsBehavior: Flickable.StopAtBounds
    flickDeceleration: 4000
    maximumFlickVelocity: 6000
    pixelAligned: true
    reuseItems: true
    cacheBuffer: 240
    currentIndex: -1

    onCurrentIndexChanged: Qt.callLater(keepToStops)

    // Entered by keyboard for the first time and not by way of one of its rows, it stands at the first in sight.
    // It has the focus itself when the program starts: the first Tab leads to its row, not past it.
    onActiveFocusChanged: if (activeFocus && KeyboardUse.current && currentIndex < 0 && Window.activeFocusItem === list)
        enter()
    Keys.onTabPressed: event => {
        const entered = currentIndex >= 0;
        if (!entered)
            enter();
        event.accepted = !entered && currentIndex >= 0;
    }

    Keys.onPressed: event => {
        if (event.matches(StandardKey.Copy)) {
            if (currentIndex >= 0)
                copyOf(currentIndex);
            event.accepted = currentIndex >= 0;
            return;
        }
        const page = Math.max(1, Math.floor(height / (currentItem ? currentItem.height + spacing : 60)) - 1);
        switch (event.key) {
        case Qt.Key_Up:
            moveTo(currentIndex - 1, -1);
            break;
        case Qt.Key_Down:
            moveTo(currentIndex + 1, 1);
            break;
        case Qt.Key_PageDown:
            moveTo(currentIndex + page, 1);
            break;
        case Qt.Key_PageUp:
            moveTo(currentIndex - page, -1);
            break;
        case Qt.Key_Home:
            moveTo(0, 1);
            break;
        case Qt.Key_End:
            moveTo(count - 1, -1);
            break;
        case Qt.Key_Menu:
            openCurrentMenu();
            break;
        case Qt.Key_F10:
            if (!(event.modifiers & Qt.ShiftModifier))
                return;
            openCurrentMenu();
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    // Where all rows are other ones, none of them is where the keyboard was.
    Connections {
        target: list.model

        function onModelReset() {
            list.currentIndex = -1;
            list.positionViewAtBeginning();
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => {
            const inList = list.contentItem.mapFromItem(null, point.scenePosition.x, point.scenePosition.y);
            list.openMenu(list.indexAt(inList.x, inList.y), point.scenePosition);
        }
    }

    RowMenu {
        id: menu

        parent: list.Window.contentItem
        owner: list
        model: list.model
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => list.scroll(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y / 120 * 72)
    }

    DragHandler {
        property real last: 0

        target: null
        acceptedDevices: PointerDevice.TouchScreen
        xAxis.enabled: false
        onActiveChanged: {
            last = 0;
            if (!active)
                list.flick(0, centroid.velocity.y);
        }
        onTranslationChanged: {
            list.scroll(last - translation.y);
            last = translation.y;
        }
    }

    // The list itself has the focus when it has no row to give it to.
    FocusRing {
        parent: list
        visible: list.marksFocus && list.activeFocus && !list.currentItem
        anchors.margins: 4
    }

    T.ScrollBar.vertical: ThinScrollBar {}
}
