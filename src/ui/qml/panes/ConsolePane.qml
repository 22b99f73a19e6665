import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState viewState
    // What takes the focus where nothing else can.
    readonly property Item entrance: list

    readonly property bool empty: list.count === 0

    LineListView {
        id: list

        anchors.fill: parent
        anchors.bottomMargin: bar.height
        focus: true
        markMargin: 4
        model: pane.viewState.logs
        selection: pane.viewState.logSelection
        mark: ">"
        Accessible.name: qsTr("Activity log")
    }

    Text {
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.leftMargin: 20
        anchors.topMargin: 16
        visible: pane.empty
        text: qsTr("Awaiting activity...")
        font: Typography.consoleEmpty
        color: WarmPalette.tertiary
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Item {
        id: bar

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 54

        Hairline {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
        }

        Text {
            anchors.left: parent.left
            anchors.leftMargin: 20
            anchors.verticalCenter: parent.verticalCenter
            text: pane.viewState.logCountText
            textFormat: Text.PlainText
            font: Typography.caption
            color: WarmPalette.tertiary
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Row {
            anchors.right: parent.right
            anchors.rightMargin: 20
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            ActionButton {
                visible: !pane.empty && !list.following
                text: qsTr("Newest Line")
                onClicked: list.followNewest()
            }

            ActionButton {
                iconName: "trash"
                text: qsTr("Clear Console")
                enabled: !pane.empty
                onClicked: pane.viewState.controller.clearLogs()
            }
        }
    }
}
