import QtQuick
import Zentrill

// One model file or folder.
RecordRow {
    id: row

    required property string name
    required property string source
    required property string sizeText
    required property RowNotes notes

    property bool deletable: true

    // What its deletion frees, where its size does not say it; found out when somebody looks at it.
    readonly property bool lookedAt: hovered || activeFocus
    readonly property string note: lookedAt ? notes.model(index, notes.revision) : ""

    signal deleteRequested
    signal reviewRequested

    function wantNote() {
        if (lookedAt)
            notes.wantModel(index);
    }

    implicitHeight: 64
    focus: current
    current: ListView.isCurrentItem
    iconName: "cube.box.fill"
    title: name
    heading.elide: Text.ElideMiddle
    explained: note !== ""
    endSpacing: 18
    Accessible.description: source + ", " + sizeText + (activeFocus && note !== "" ? ". " + note : "")

    onLookedAtChanged: wantNote()
    onIndexChanged: wantNote()

    // Wherever in the row the focus is, the arrow keys go on from this row.
    onActiveFocusChanged: if (activeFocus)
        list.currentIndex = index

    // A row that waits to be used again must not be found by an assistive tool.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    // Its button takes Space for itself.
    Keys.onSpacePressed: event => {
        event.accepted = focusedItself;
        if (event.accepted && !event.isAutoRepeat)
            reviewRequested();
    }

    Connections {
        target: row.notes
        enabled: row.lookedAt

        // What was known can be forgotten.
        function onRevisionChanged() {
            row.wantNote();
        }
    }

    secondLine: Tag {
        text: row.source
        font: Typography.caption
    }

    // As high as the row, so that its tooltip lies below that, and leaves the row's button free.
    Item {
        width: size.width
        height: row.height

        Row {
            id: size

            anchors.verticalCenter: parent.verticalCenter
            spacing: 6

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "internaldrive.fill"
                size: 10
                tint: WarmPalette.tertiary
            }

            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                text: row.sizeText
                font: Typography.detail
                color: WarmPalette.secondary
            }
        }

        // Explains the size. The keyboard has one tooltip for all of the row.
        TipLoader {
            text: row.marked && row.heading.truncated ? row.name + "\n" + row.note : row.note
            wanted: row.explained && (row.marked || row.hovered && !row.heading.told)
        }
    }

    RowButton {
        anchors.verticalCenter: parent.verticalCenter
        current: row.current
        text: qsTr("Delete")
        enabled: row.deletable
        Accessible.name: qsTr("Delete %1").arg(row.name)
        onClicked: row.deleteRequested()
    }
}
