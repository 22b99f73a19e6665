import QtQuick
import Zentrill

// What is being removed, how far that is, and the button that cancels it.
Row {
    id: busy

    required property ContentViewState viewState
    // What the line has for this and the subtitle, and what the subtitle would like of it.
    required property real room
    required property real subtitleRoom

    // What the operation's text can have of the line, and what it has whatever the subtitle would like.
    readonly property real mostRoom: room - cancel.width - 14 - progress.room
    readonly property real fewest: progress.visible ? Math.max(60, Math.min(190, mostRoom)) : 110

    spacing: 8

    BusySpinner {
        anchors.verticalCenter: parent.verticalCenter
        running: busy.visible
    }

    ElidedText {
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, Math.max(busy.fewest, busy.mostRoom - busy.subtitleRoom))
        text: busy.viewState.controller.operationDescription
        font: Typography.body
        color: WarmPalette.secondary
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Label {
        id: progress

        readonly property ProgressState state: busy.viewState.progress
        readonly property real room: visible ? width + busy.spacing : 0

        anchors.verticalCenter: parent.verticalCenter
        visible: text !== ""
        text: state.text
        font: Typography.body
        color: WarmPalette.tertiary
        Accessible.name: state.spokenText
        Accessible.description: state.path

        HoverHandler {
            id: hover
        }

        // The keyboard leads no further here than to the button beside it.
        TipLoader {
            text: progress.state.path
            wanted: text !== "" && (hover.hovered || cancel.visualFocus)
        }
    }

    ActionButton {
        id: cancel

        anchors.verticalCenter: parent.verticalCenter
        implicitHeight: 26
        font: Typography.name
        text: busy.viewState.controller.isCancelling ? qsTr("Cancelling…") : qsTr("Cancel")
        enabled: busy.viewState.controller.canCancelOperation && !busy.viewState.controller.isCancelling
        // It stays the same button, and says what comes of it.
        Accessible.name: qsTr("Cancel")
        Accessible.description: busy.viewState.controller.isCancelling ? text : ""
        onClicked: busy.viewState.controller.cancelOperation()
    }
}
