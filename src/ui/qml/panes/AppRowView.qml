import QtQuick
import Zentrill

// One catalog tool. The whole row is the check box.
Pressable {
    id: row

    required property int index
    required property RecordList list
    required property string displayName
    required property string description
    required property string iconName
    required property string origin
    required property string statusText
    required property string markIcon
    required property bool isDetected
    required property bool hasResidualData
    required property bool isSelected

    required property RowNotes notes

    // What remains of the tool; found out when somebody looks at it.
    readonly property bool lookedAt: hasResidualData && (statusHover.hovered || activeFocus)
    readonly property string note: lookedAt ? notes.application(index, notes.revision) : ""

    readonly property bool current: ListView.isCurrentItem
    readonly property string accessibleValue: isSelected ? qsTr("Selected") : qsTr("Not selected")
    readonly property real dimming: isDetected ? 1 : 0.85

    signal toggleSelection

    function wantNote() {
        if (lookedAt)
            notes.wantApplication(index);
    }

    // For assistive tools.
    function showMenu() {
        list.openMenuOf(index);
    }

    implicitHeight: 74
    available: isDetected
    focus: current
    activeFocusOnTab: false
    text: displayName

    Accessible.role: Accessible.CheckBox
    Accessible.name: displayName
    Accessible.checkable: true
    Accessible.checked: isSelected
    Accessible.description: description + ". " + origin + ". " + statusText + ". " + accessibleValue
                            + (activeFocus && note !== "" ? ". " + note : "")

    onLookedAtChanged: wantNote()
    onIndexChanged: wantNote()

    onActiveFocusChanged: if (activeFocus)
        list.currentIndex = index
    onClicked: toggleSelection()

    // A row that waits to be used again must not be found by an assistive tool.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    Connections {
        target: row.notes
        enabled: row.lookedAt

        // What was known can be forgotten.
        function onRevisionChanged() {
            row.wantNote();
        }
    }

    RowPlate {
        id: plate

        anchors.fill: parent
        hovered: row.hovered && row.isDetected
        chosen: row.isSelected
        focused: row.activeFocus && row.list.marksFocus
    }

    Item {
        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 18

        Item {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24

            Icon {
                anchors.centerIn: parent
                name: row.markIcon
                size: 19
                tint: row.isSelected ? WarmPalette.copper : row.isDetected ? WarmPalette.secondary
                                     : WarmPalette.faint(WarmPalette.tertiary, 0.6)
            }
        }

        Icon {
            id: glyph

            anchors.left: mark.right
            anchors.leftMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            name: row.iconName
            size: 22
            tint: row.isSelected ? WarmPalette.copper : row.isDetected ? WarmPalette.secondary
                                 : WarmPalette.faint(WarmPalette.tertiary, 0.7)
        }

        Column {
            anchors.left: glyph.right
            anchors.leftMargin: 16
            anchors.right: status.left
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3
            opacity: row.dimming

            ElidedText {
                width: parent.width
                text: row.displayName
                font: Typography.name
                color: row.isDetected ? WarmPalette.paper : WarmPalette.secondary
            }

            ElidedText {
                id: about

                width: parent.width
                reached: plate.focused && row.note === ""
                text: row.description
                font: Typography.caption
                color: row.isSelected ? WarmPalette.secondary : WarmPalette.tertiary
            }

            ElidedText {
                width: parent.width
                text: row.origin
                font: Typography.caption
                color: WarmPalette.tertiary
            }
        }

        PlainText {
            id: status

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: row.statusText
            font: Typography.detail
            opacity: row.dimming
            color: row.hasResidualData ? WarmPalette.copper : row.isDetected ? WarmPalette.paper : WarmPalette.tertiary

            HoverHandler {
                id: statusHover

                enabled: row.hasResidualData
            }

            TipLoader {
                // The keyboard has one tooltip for all of the row.
                text: plate.focused && about.truncated ? row.description + "\n" + row.note : row.note
                wanted: row.note !== "" && !row.down && (statusHover.hovered || plate.focused)
            }
        }
    }
}
