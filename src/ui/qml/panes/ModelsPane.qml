import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState viewState
    // What takes the focus where nothing else can.
    readonly property Item entrance: rows

    RecordList {
        id: rows

        anchors.fill: parent
        focus: true
        model: pane.viewState.models
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Local models")

        delegate: LocalModelRowView {
            width: rows.rowWidth
            list: rows
            deletable: pane.viewState.acceptsRequests
            onDeleteRequested: pane.viewState.requestModelDeletion(index)
        }
    }

    EmptyState {
        anchors.centerIn: parent
        visible: rows.count === 0
        iconName: "cube.transparent"
        heading: qsTr("No local models detected.")
        detail: qsTr("Scanned Ollama, HuggingFace, and LM Studio directories.")
    }
}
