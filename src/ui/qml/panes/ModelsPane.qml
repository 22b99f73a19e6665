import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState viewState
    // What takes the focus where nothing else can.
    readonly property Item entrance: rows

    PathEntries {
        id: pathEntries

        paths: pane.viewState.paths
    }

    RecordList {
        id: rows

        anchors.fill: parent
        anchors.bottomMargin: strip.visible ? strip.height : 0
        focus: true
        model: pane.viewState.models
        menuOf: row => [
                {
                    text: qsTr("Review"),
                    enabled: pane.viewState.acceptsRequests,
                    act: () => pane.viewState.reviewModel(row)
                },
                ...pathEntries.of(pane.viewState.modelPath(row))
            ]
        copyOf: row => pane.viewState.copyModel(row)
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Local models")

        delegate: LocalModelRowView {
            width: rows.rowWidth
            list: rows
            notes: pane.viewState.rowNotes
            deletable: pane.viewState.acceptsRequests
            onReviewRequested: pane.viewState.reviewModel(index)
            onDeleteRequested: pane.viewState.requestModelDeletion(index)
        }
    }

    ListStrip {
        id: strip

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        strip: pane.viewState.modelStrip
        searchName: qsTr("Search local models")
        list: rows
    }

    Connections {
        target: pane.viewState
        enabled: pane.visible && strip.visible

        function onFindRequested() {
            strip.search();
        }
    }

    Label {
        anchors.centerIn: rows
        visible: pane.viewState.modelStrip.findsNothing
        text: qsTr("No model of that name.")
        font: Typography.name
        color: WarmPalette.secondary
    }

    EmptyState {
        anchors.centerIn: parent
        visible: !pane.viewState.modelStrip.shown
        iconName: "cube.transparent"
        heading: qsTr("No local models detected.")
        detail: qsTr("Scanned Ollama, HuggingFace, and LM Studio directories.")
    }
}
