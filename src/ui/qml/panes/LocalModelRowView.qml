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

    required property RowNotes notes

    // What its deletion frees, where its size does not say it; found out when somebody looks at it.
    readonly property bool lookedAt: hover.hovered || activeFocus
    readonly property string note: lookedAt ? notes.model(index, notes.revision) : ""

    property bool deletable: true
    readonly property bool current: ListView.isCurrentItem

    signal deleteRequested
    signal reviewRequested

    function wantNote() {
        if (lookedAt)
            notes.wantModel(index);
    }

    onLookedAtChanged: wantNote()
    onIndexChanged: wantNote()

    // For assistive tools.
    function showMenu() {
        list.openMenuOf(index);
    }

    implicitHeight: 64
    focus: current
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: source + ", " + sizeText + (activeFocus && note !== "" ? ". " + note : "")
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

    Connections {
        target: row.notes
        enabled: row.lookedAt

        // What was known can be forgotten.
        function onRevisionChanged() {
            row.wantNote();
        }
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
            id: title

            width: parent.width
            reached: plate.focused && row.note === ""
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

    // Explains the size, and leaves the row's button free.
    Item {
        anchors.left: size.left
        anchors.right: size.right
        anchors.top: row.top
        anchors.bottom: row.bottom

        TipLoader {
            // The keyboard has one tooltip for all of the row.
            text: plate.focused && title.truncated ? row.name + "\n" + row.note : row.note
            wanted: row.note !== "" && (plate.focused || hover.hovered && !title.told)
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
