import QtQuick
import QtQuick.Templates as T
import Zentrill

// Lines of text that can be selected across lines and copied. It can follow the newest line while that is
// in sight.
ListView {
    id: list

    required property LineSelection selection
    // The mark in front of each line; none when empty.
    property string mark

    // What the mark of the focus is drawn around, and how far inside of it.
    property Item markArea: list
    property real markMargin: -3

    property font lineFont: Typography.console
    property color lineColor: WarmPalette.paper
    // In proportion to the font's own.
    property real lineHeight: 1

    // Whether new lines pull the view along.
    property bool following: true

    // What the menu of a row offers, for `ContextMenu`; nothing, and the row has none.
    property var menuOf: row => []
    // What the menu lies over: the window, or a modal in it, which keeps the focus.
    property Item menuArea: Window.contentItem

    // The next row that has a menu, from `row` on; -1 where there is none.
    function rowWithMenu(row: int): int {
        while (row < count && menuOf(row).length === 0)
            ++row;
        return row < count ? row : -1;
    }

    // Opens the menu of a row at a point of the window; the row is selected, so that it is seen which one it is.
    function openMenu(row: int, place: point) {
        const entries = row < 0 ? [] : menuOf(row);
        if (entries.length === 0)
            return;
        forceActiveFocus(Qt.MouseFocusReason);
        selection.begin(row, 0);
        selection.extend(row, 1000000);
        const next = rowWithMenu(row + 1);
        if (next >= 0)
            entries.push({
                text: qsTr("Next Path"),
                enabled: true,
                act: () => openMenuAt(next)
            });
        menu.open(entries, place);
    }

    // The same below the row, once that is in sight.
    function openMenuAt(row: int) {
        if (row < 0)
            return;
        positionViewAtIndex(row, ListView.Contain);
        const item = itemAtIndex(row);
        if (item)
            openMenu(row, item.mapToItem(null, 24, item.height));
    }

    // For the row that is selected, or else the first one that has a menu.
    function openCurrentMenu() {
        openMenuAt(rowWithMenu(selection.empty ? 0 : selection.firstRow));
    }

    function followNewest() {
        following = true;
        positionViewAtEnd();
    }

    // Opens or closes the fold of that row, which stays in sight.
    function toggle(row: int) {
        following = false;
        model.toggle(row);
        positionViewAtIndex(row, ListView.Contain);
        Qt.callLater(scroll, 0);
    }

    // The line and the character under a point of the view.
    function place(x: real, y: real): point {
        const inside = Math.max(0, Math.min(height - 1, y)) + contentY;
        let row = indexAt(1, inside);
        if (row < 0)
            return inside < contentHeight / 2 ? Qt.point(0, 0) : Qt.point(model.lastLine(count - 1), 1000000);
        const item = itemAtIndex(row);
        if (!item)
            return Qt.point(model.firstLine(row), 0);
        // Before or behind all that is folded there.
        if (item.isFold)
            return inside - item.y < item.height / 2 ? Qt.point(item.firstLine, 0) : Qt.point(item.lastLine, item.isOpen ? 0 : 1000000);
        return Qt.point(item.firstLine, item.positionAt(x - leftMargin, inside - item.y));
    }

    // The row of the fold at that height of the view; -1 where none is.
    function foldAt(y: real): int {
        const row = indexAt(1, y + contentY);
        const item = row < 0 ? null : itemAtIndex(row);
        return item && item.isFold ? row : -1;
    }

    // Only what a person does decides whether the view follows; a line that arrives never does.
    function scroll(by: real) {
        const lowest = Math.max(originY - topMargin, originY + contentHeight + bottomMargin - height);
        contentY = Math.max(originY - topMargin, Math.min(lowest, contentY + by));
        following = contentY >= lowest - 2;
    }

    leftMargin: 20
    rightMargin: 20
    topMargin: 14
    bottomMargin: 14
    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    pixelAligned: true
    reuseItems: true
    cacheBuffer: 200
    interactive: false
    // No line is stepped to: the list itself has the focus.
    currentIndex: -1
    Accessible.role: Accessible.List

    onCountChanged: if (following) Qt.callLater(positionViewAtEnd)
    onHeightChanged: if (following) Qt.callLater(positionViewAtEnd)
    onWidthChanged: if (following) Qt.callLater(positionViewAtEnd)

    Keys.onPressed: event => {
        const page = height - 40;
        if (event.matches(StandardKey.Copy))
            selection.copy();
        else if (event.matches(StandardKey.SelectAll))
            selection.selectAll();
        else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)
            openCurrentMenu();
        else if (event.key === Qt.Key_Up)
            scroll(-40);
        else if (event.key === Qt.Key_Down)
            scroll(40);
        else if (event.key === Qt.Key_PageUp)
            scroll(-page);
        else if (event.key === Qt.Key_PageDown)
            scroll(page);
        else if (event.key === Qt.Key_Home) {
            following = false;
            positionViewAtBeginning();
        } else if (event.key === Qt.Key_End)
            followNewest();
        else
            return;
        event.accepted = true;
    }

    RowMenu {
        id: menu

        parent: list.menuArea
        owner: list
        model: list.model
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => list.scroll(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y / 120 * 48)
    }

    MouseArea {
        id: pointer

        property real lastX
        property real lastY
        readonly property bool selects: pressedButtons & Qt.LeftButton

        parent: list
        anchors.fill: parent
        anchors.rightMargin: 12
        cursorShape: Qt.IBeamCursor
        preventStealing: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                list.openMenu(list.indexAt(1, mouse.y + list.contentY), mapToItem(null, mouse.x, mouse.y));
            else if (list.selection.empty && list.foldAt(mouse.y) >= 0)
                list.toggle(list.foldAt(mouse.y));
        }
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton)
                return;
            list.forceActiveFocus(Qt.MouseFocusReason);
            lastX = mouse.x;
            lastY = mouse.y;
            const at = list.place(mouse.x, mouse.y);
            if (mouse.modifiers & Qt.ShiftModifier)
                list.selection.extend(at.x, at.y);
            else
                list.selection.begin(at.x, at.y);
        }
        onPositionChanged: mouse => {
            if (!selects)
                return;
            lastX = mouse.x;
            lastY = mouse.y;
            const at = list.place(mouse.x, mouse.y);
            list.selection.extend(at.x, at.y);
        }
        onDoubleClicked: mouse => {
            if (mouse.button === Qt.RightButton || list.foldAt(mouse.y) >= 0)
                return;
            const at = list.place(mouse.x, mouse.y);
            list.selection.selectWord(at.x, at.y);
        }
    }

    // A selection that is dragged past an edge pulls the text along.
    Timer {
        running: pointer.selects && (pointer.lastY < 0 || pointer.lastY > list.height)
        interval: 30
        repeat: true
        onTriggered: {
            list.scroll(pointer.lastY < 0 ? -18 : 18);
            const at = list.place(pointer.lastX, pointer.lastY);
            list.selection.extend(at.x, at.y);
        }
    }

    delegate: ConsoleLogRowView {
        required property int index
        required property int firstLine
        required property int lastLine
        required property bool isHeading
        required property bool isListed
        // What is folded is marked as a whole.
        readonly property bool marked: isFold && !isOpen && list.selection.revision >= 0
                                       && list.selection.endIn(firstLine) > 0 && list.selection.endIn(lastLine) > 0

        spaceAbove: isHeading ? 8 : 0
        indent: isListed ? 16 : 0
        lineHeight: list.lineHeight
        mark: !isFold ? list.mark : isOpen ? "▾" : "▸"
        font: list.lineFont
        color: list.lineColor
        width: list.width - list.leftMargin - list.rightMargin
        selectionStart: !isFold && list.selection.revision >= 0 ? list.selection.startIn(firstLine) : 0
        selectionEnd: marked ? 1000000 : !isFold && list.selection.revision >= 0 ? list.selection.endIn(firstLine) : 0
        onToggled: list.toggle(index)
        onReached: list.positionViewAtIndex(index, ListView.Contain)
    }

    FocusRing {
        parent: list.markArea
        visible: list.Window.activeFocusItem === list && KeyboardUse.current
        anchors.margins: list.markMargin
    }

    T.ScrollBar.vertical: ThinScrollBar {
        onPressedChanged: if (!pressed) list.scroll(0)
        onPositionChanged: if (pressed) list.following = position + size >= 1 - 0.0001
    }
}
