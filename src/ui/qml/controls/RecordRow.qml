import QtQuick
import Zentrill

// The frame of a row of a `RecordList` that stands for one thing: its icon, its title above a second line, and at the
// end what else is told of it and its buttons.
FocusScope {
    id: row

    required property int index
    required property RecordList list
    required property bool current
    required property string iconName
    required property string title

    property color tint: WarmPalette.copper
    // Whether the row's own tooltip stands for the title's once the keyboard has led here.
    property bool explained: false
    property alias heading: heading
    property alias secondLine: words.data
    property alias endSpacing: end.spacing
    default property alias end: end.data

    readonly property real wordsStart: tile.x + tile.width + 14
    readonly property real wordsMargin: 16
    readonly property real endMargin: 12
    readonly property bool hovered: hover.hovered
    // Not one of its buttons.
    readonly property bool focusedItself: activeFocus && Window.activeFocusItem === row
    readonly property bool marked: focusedItself && list.marksFocus

    // For assistive tools.
    function showMenu() {
        list.openMenuOf(index);
    }

    implicitHeight: 68
    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.focusable: true
    Accessible.focused: activeFocus

    // The arrow keys come to the row itself.
    onCurrentChanged: {
        for (let place = 0; !current && place < end.children.length; ++place)
            end.children[place].focus = false;
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: row.list.takeFocus(row.index)
    }

    RowPlate {
        anchors.fill: parent
        outlined: true
        hovered: row.hovered
        focused: row.marked
    }

    IconTile {
        id: tile

        x: 10
        anchors.verticalCenter: parent.verticalCenter
        iconName: row.iconName
        tint: row.tint
    }

    Column {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: row.wordsStart
        anchors.right: end.left
        anchors.rightMargin: row.wordsMargin
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5

        ElidedText {
            id: heading

            width: parent.width
            reached: row.marked && !row.explained
            text: row.title
            font: Typography.name
            color: WarmPalette.paper
        }
    }

    Row {
        id: end

        anchors.right: parent.right
        anchors.rightMargin: row.endMargin
        height: parent.height
        spacing: 8
    }
}
