import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState viewState
    // What takes the focus where nothing else can.
    readonly property Item entrance: rows

    EmptyState {
        anchors.centerIn: parent
        visible: pane.viewState.dockerNoticeHeading !== ""
        iconName: pane.viewState.dockerNoticeIcon
        heading: pane.viewState.dockerNoticeHeading
        detail: pane.viewState.controller.dockerStatusMessage
        tint: WarmPalette.copper
    }

    RecordList {
        id: rows

        anchors.fill: parent
        anchors.bottomMargin: strip.visible ? strip.height : 0
        visible: pane.viewState.dockerNoticeHeading === ""
        focus: true
        model: pane.viewState.dockerRows
        menuOf: row => pane.viewState.dockerStop(row, 1) !== row ? [] : [
                {
                    text: qsTr("Review"),
                    enabled: pane.viewState.acceptsRequests,
                    act: () => pane.viewState.reviewDockerRow(row)
                }
            ]
        copyOf: row => pane.viewState.copyDockerRow(row)
        // The list asks once more while the window closes, when its rows are gone.
        stopFrom: (row, step) => pane.viewState ? pane.viewState.dockerStop(row, step) : -1
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Docker containers and images")

        delegate: DockerRowView {
            width: rows.rowWidth
            list: rows
            viewState: pane.viewState
        }
    }

    ListStrip {
        id: strip

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        strip: pane.viewState.dockerStrip
        searchName: qsTr("Search containers and images")
        list: rows
    }

    Connections {
        target: pane.viewState
        enabled: pane.visible && strip.visible

        function onFindRequested() {
            strip.search();
        }
    }
}
