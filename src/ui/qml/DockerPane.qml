import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState state_
    // What takes the focus where nothing else can.
    readonly property Item entrance: rows

    EmptyState {
        anchors.centerIn: parent
        visible: pane.state_.dockerNoticeHeading !== ""
        iconName: pane.state_.dockerNoticeIcon
        heading: pane.state_.dockerNoticeHeading
        detail: pane.state_.controller.dockerStatusMessage
        tint: WarmPalette.copper
    }

    RecordList {
        id: rows

        anchors.fill: parent
        visible: pane.state_.dockerNoticeHeading === ""
        focus: true
        model: pane.state_.dockerRows
        // Asked once more while the window closes, when there are no rows any longer.
        stopFrom: (row, step) => pane.state_ ? pane.state_.dockerStop(row, step) : -1
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Docker containers and images")

        delegate: DockerRowView {
            width: rows.rowWidth
            list: rows
            state_: pane.state_
        }
    }
}
