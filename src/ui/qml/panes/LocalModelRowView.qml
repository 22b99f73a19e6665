import QtQuick
import Zentrill

// One model file or folder.
FocusScope {
    id: row

    required property int index
    required property RecordList list
    required property string name
    required property string source
    required property string sizeText

    property bool deletable: true
    readonly property bool current: ListView.isCurrentItem

    signal deleteRequested
    signal reviewRequested

    implicitHeight: 64
    focus: current
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: source + ", " + sizeText
    Accessible.focusable: true
    Accessible.focused: activeFocus

    // Wherever in the row the focus is, the arrow keys go on from this row; they come to the row itself.
    onActiveFocusChanged: if (activeFocus)
        list.currentIndex = index
    onCurrentChanged: if (!current)
        remove.focus = false

    // A row that waits to be used again must not be found by an assistive tool.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    // Its button takes Space for itself.
    Keys.onSpacePressed: event => {
        event.accepted = !remove.activeFocus;
        if (event.accepted && !event.isAutoRepeat)
            reviewRequested();
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: row.list.takeFocus(row.index)
    }

    RowPlate {
        id: plate

        anchors.fill: parent
        outlined: true
        hovered: hover.hovered
        focused: row.activeFocus && !remove.activeFocus && row.list.marksFocus
    }

    IconTile {
        id: tile

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        iconName: "cube.box.fill"
    }

    Column {
        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: size.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5

        ElidedText {
            width: parent.width
            reached: plate.focused
            text: row.name
            font: Typography.name
            color: WarmPalette.paper
            elide: Text.ElideMiddle
        }

        Tag {
            text: row.source
            font: Typography.caption
        }
    }

    Row {
        id: size

        anchors.right: remove.left
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            name: "internaldrive.fill"
            size: 10
            tint: WarmPalette.tertiary
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: row.sizeText
            textFormat: Text.PlainText
            font: Typography.detail
            color: WarmPalette.secondary
        }
    }

    ActionButton {
        id: remove

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        kind: "danger"
        font: Typography.rowControl
        iconName: "trash.fill"
        iconSize: 12
        text: qsTr("Delete")
        enabled: row.deletable
        activeFocusOnTab: row.current || activeFocus
        Accessible.name: qsTr("Delete %1").arg(row.name)
        onClicked: row.deleteRequested()
    }
}
