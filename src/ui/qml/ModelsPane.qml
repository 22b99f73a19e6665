import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState state_
    // What takes the focus where nothing else can.
    readonly property Item entrance: rows

    RecordList {
        id: rows

        anchors.fill: parent
        focus: true
        model: pane.state_.models
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Local models")

        delegate: LocalModelRowView {
            width: rows.rowWidth
            list: rows
            deletable: pane.state_.acceptsRequests
            onDeleteRequested: pane.state_.requestModelDeletion(index)
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
