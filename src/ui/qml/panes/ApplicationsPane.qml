import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState viewState
    // What takes the focus where nothing else can.
    readonly property Item entrance: rows

    Label {
        id: nothing

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.top: parent.top
        height: 40
        visible: pane.viewState.nothingFound
        verticalAlignment: Text.AlignBottom
        text: qsTr("Nothing to remove: none of these tools is installed here, and none has left data behind.")
        font: Typography.body
        color: WarmPalette.secondary
        elide: Text.ElideRight
    }

    PathEntries {
        id: pathEntries

        paths: pane.viewState.paths
    }

    RecordList {
        id: rows

        anchors.fill: parent
        anchors.topMargin: nothing.visible ? nothing.height : 0
        anchors.bottomMargin: footer.height
        model: pane.viewState.applications
        menuOf: row => [
                {
                    text: qsTr("Review"),
                    enabled: pane.viewState.canReviewApplication(row),
                    act: () => pane.viewState.reviewApplication(row)
                },
                ...pathEntries.of(pane.viewState.applicationPath(row))
            ]
        copyOf: row => pane.viewState.copyApplication(row)
        focus: true
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Applications")

        delegate: AppRowView {
            width: rows.rowWidth
            list: rows
            notes: pane.viewState.rowNotes
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
