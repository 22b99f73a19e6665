import QtQuick
import Zentrill

// One image, known by its exact ID.
FocusScope {
    id: row

    required property string title
    required property string shortId
    required property string size
    required property string usageText
    required property bool inUse
    required property bool actionsEnabled
    required property bool current
    // Whether the focus is shown on this row.
    required property bool marked

    signal selected
    signal menuRequested
    signal removeRequested

    // For assistive tools.
    function showMenu() {
        menuRequested();
    }

    implicitHeight: 68
    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: shortId + ", " + size + ", " + usageText
    Accessible.focusable: true
    Accessible.focused: activeFocus

    // The arrow keys come to the row itself.
    onCurrentChanged: if (!current)
        remove.focus = false

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: row.selected()
    }

    RowPlate {
        id: plate

        anchors.fill: parent
        outlined: true
        hovered: hover.hovered
        focused: row.marked && row.activeFocus && !remove.activeFocus
    }

    IconTile {
        id: tile

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        iconName: "square.stack.3d.up.fill"
    }

    Column {
        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: badge.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5

        ElidedText {
            width: parent.width
            reached: plate.focused
            text: row.title
            font: Typography.name
            color: WarmPalette.paper
        }

        Row {
            spacing: 12

            Text {
                text: row.shortId
                textFormat: Text.PlainText
                font: Typography.caption
                color: WarmPalette.tertiary
            }

            Text {
                text: row.size
                textFormat: Text.PlainText
                font: Typography.caption
                color: WarmPalette.secondary
            }
        }
    }

    Tag {
        id: badge

        anchors.right: remove.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        text: row.usageText
        textColor: row.inUse ? WarmPalette.copper : WarmPalette.secondary
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
        text: qsTr("Remove")
        tip: qsTr("Remove this exact image ID without force.")
        enabled: row.actionsEnabled
        activeFocusOnTab: row.current || activeFocus
        Accessible.name: qsTr("Remove %1").arg(row.title)
        onClicked: row.removeRequested()
    }
}
