import QtQuick
import Zentrill

// One container.
RecordRow {
    id: row

    required property string image
    required property string status
    required property bool running
    required property bool actionsEnabled

    // Where the states begin: in one column in all rows, whatever buttons they have, and in a narrow window
    // before the buttons of a running container.
    readonly property real stateColumn: {
        const wide = Math.max(160, Math.min(320, (width - wordsStart) * 0.38));
        const allButtons = stop.implicitWidth + endSpacing + remove.implicitWidth + endMargin;
        const leastWords = width - wordsStart - wordsMargin - allButtons;
        return Math.round(Math.min(wide, Math.max(leastState, leastWords - leastState)));
    }
    readonly property real leastState: 56

    signal stopRequested
    signal deleteRequested

    iconName: running ? "shippingbox.fill" : "shippingbox"
    tint: running ? WarmPalette.copper : WarmPalette.tertiary
    Accessible.description: image + ", " + status

    secondLine: Row {
        width: parent.width
        spacing: 10

        ElidedText {
            anchors.verticalCenter: parent.verticalCenter
            width: row.stateColumn - parent.spacing
            // One tooltip at a time: the name's is the first.
            reached: row.marked && !row.heading.truncated
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

    RowButton {
        id: stop

        anchors.verticalCenter: parent.verticalCenter
        visible: row.running
        current: row.current
        kind: "copper"
        iconName: "stop.fill"
        text: qsTr("Stop")
        enabled: row.actionsEnabled
        Accessible.name: qsTr("Stop %1").arg(row.title)
        onClicked: row.stopRequested()
    }

    RowButton {
        id: remove

        anchors.verticalCenter: parent.verticalCenter
        current: row.current
        text: qsTr("Delete")
        enabled: row.actionsEnabled
        Accessible.name: qsTr("Delete %1").arg(row.title)
        onClicked: row.deleteRequested()
    }
}
