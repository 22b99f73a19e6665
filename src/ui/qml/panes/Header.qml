import QtQuick
import Zentrill

Item {
    id: header

    required property ContentViewState viewState

    implicitHeight: 98

    WindowMover {
        anchors.fill: parent
    }

    Label {
        id: title

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.top: parent.top
        anchors.topMargin: 20
        height: 30
        verticalAlignment: Text.AlignVCenter
        text: header.viewState.title
        font: Typography.title
        color: WarmPalette.paper
        Accessible.role: Accessible.Heading
    }

    ActionButton {
        id: scan

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: title.verticalCenter
        iconName: "arrow.clockwise"
        spinning: header.viewState.controller.isScanning
        text: header.viewState.controller.isScanning ? qsTr("Scanning...") : qsTr("Scan System")
        tip: Shortcuts.scanKeys
        enabled: !header.viewState.controller.isScanning
        onClicked: header.viewState.controller.scanSystem()
    }

    ElidedText {
        id: subtitle

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.right: busy.visible ? busy.left : parent.right
        anchors.rightMargin: 20
        anchors.top: title.bottom
        anchors.topMargin: 6
        height: 24
        text: header.viewState.subtitle
        font: Typography.body
        color: WarmPalette.secondary
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Row {
        id: busy

        // What the operation's text can have of the line, and what it has whatever the subtitle would like.
        readonly property real mostRoom: header.width - 40 - cancel.width - 14 - 40 - progress.room
        readonly property real fewest: progress.visible ? Math.max(60, Math.min(190, mostRoom)) : 110

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: subtitle.verticalCenter
        spacing: 8
        visible: header.viewState.controller.isBusy

        BusySpinner {
            anchors.verticalCenter: parent.verticalCenter
            running: busy.visible
        }

        ElidedText {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, Math.max(busy.fewest, busy.mostRoom - subtitle.implicitWidth))
            text: header.viewState.controller.operationDescription
            font: Typography.body
            color: WarmPalette.secondary
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Label {
            id: progress

            readonly property ProgressState state: header.viewState.progress
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
            text: header.viewState.controller.isCancelling ? qsTr("Cancelling…") : qsTr("Cancel")
            enabled: header.viewState.controller.canCancelOperation && !header.viewState.controller.isCancelling
            // It stays the same button, and says what comes of it.
            Accessible.name: qsTr("Cancel")
            Accessible.description: header.viewState.controller.isCancelling ? text : ""
            onClicked: header.viewState.controller.cancelOperation()
        }
    }

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
    }
}
