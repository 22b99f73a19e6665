import QtQuick
import Zentrill

// One container.
FocusScope {
    id: row

    required property string name
    required property string image
    required property string status
    required property bool running
    required property bool actionsEnabled
    required property bool current
    // Whether the focus is shown on this row.
    required property bool marked

    // Where the states begin: in one column in all rows, whatever buttons they have, and in a narrow window
    // before the buttons of a running container.
    readonly property real stateColumn: {
        const wide = Math.max(160, Math.min(320, (width - words.x) * 0.38));
        const allButtons = stop.implicitWidth + buttons.spacing + remove.implicitWidth + buttons.anchors.rightMargin;
        const leastWords = width - words.x - words.anchors.rightMargin - allButtons;
        return Math.round(Math.min(wide, Math.max(leastState, leastWords - leastState)));
    }
    readonly property real leastState: 56

    signal selected
    signal menuRequested
    signal stopRequested
    signal deleteRequested

    // For assistive tools.
    function showMenu() {
        menuRequested();
    }

    implicitHeight: 68
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: image + ", " + status
    Accessible.focusable: true
    Accessible.focused: activeFocus

    // The arrow keys come to the row itself.
    onCurrentChanged: if (!current)
        stop.focus = remove.focus = false

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
        focused: row.marked && row.activeFocus && !stop.activeFocus && !remove.activeFocus
    }

    IconTile {
        id: tile

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        iconName: row.running ? "shippingbox.fill" : "shippingbox"
        tint: row.running ? WarmPalette.copper : WarmPalette.tertiary
    }

    Column {
        id: words

        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: buttons.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5

        ElidedText {
            id: title

            width: parent.width
            reached: plate.focused
            text: row.name
            font: Typography.name
            color: WarmPalette.paper
        }

        Row {
            width: parent.width
            spacing: 10

            ElidedText {
                id: imageName

                anchors.verticalCenter: parent.verticalCenter
                width: row.stateColumn - parent.spacing
                // One tooltip at a time: the name's is the first.
                reached: plate.focused && !title.truncated
                text: row.image
                font: Typography.caption
                color: WarmPalette.tertiary
                elide: Text.ElideMiddle
            }

            Tag {
                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(40, Math.min(implicitWidth, parent.width - row.stateColumn))
                text: row.status
                textColor: row.running ? WarmPalette.copper : WarmPalette.secondary
            }
        }
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        ActionButton {
            id: stop

            visible: row.running
            kind: "copper"
            font: Typography.rowControl
            iconName: "stop.fill"
            iconSize: 12
            text: qsTr("Stop")
            enabled: row.actionsEnabled
            activeFocusOnTab: row.current || activeFocus
            Accessible.name: qsTr("Stop %1").arg(row.name)
            onClicked: row.stopRequested()
        }

        ActionButton {
            id: remove

            kind: "danger"
            font: Typography.rowControl
            iconName: "trash.fill"
            iconSize: 12
            text: qsTr("Delete")
            enabled: row.actionsEnabled
            activeFocusOnTab: row.current || activeFocus
            Accessible.name: qsTr("Delete %1").arg(row.name)
            onClicked: row.deleteRequested()
        }
    }
}
