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
        anchors.bottomMargin: footer.height
        model: pane.viewState.applications
        menuOf: row => [
                {
                    text: qsTr("Review"),
                    enabled: pane.viewState.canReviewApplication(row),
                    act: () => pane.viewState.reviewApplication(row)
                }
            ]
        focus: true
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Applications")

        delegate: AppRowView {
            width: rows.rowWidth
            list: rows
            onToggleSelection: pane.viewState.toggleApplication(index)
        }
    }

    ApplicationsFooter {
        id: footer

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        viewState: pane.viewState
    }
}
