import QtQuick
import Zentrill

Item {
    id: header

    required property ContentViewState state_

    implicitHeight: 98

    WindowMover {
        anchors.fill: parent
    }

    Text {
        id: title

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.top: parent.top
        anchors.topMargin: 20
        height: 30
        verticalAlignment: Text.AlignVCenter
        text: header.state_.title
        font: Typography.title
        color: WarmPalette.paper
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    ActionButton {
        id: scan

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: title.verticalCenter
        iconName: "arrow.clockwise"
        spinning: header.state_.controller.isScanning
        text: header.state_.controller.isScanning ? qsTr("Scanning...") : qsTr("Scan System")
        enabled: !header.state_.controller.isScanning
        onClicked: header.state_.controller.scanSystem()
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
        text: header.state_.subtitle
        font: Typography.body
        color: WarmPalette.secondary
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Row {
        id: busy

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: subtitle.verticalCenter
        spacing: 8
        visible: header.state_.controller.isBusy

        BusySpinner {
            anchors.verticalCenter: parent.verticalCenter
            running: busy.visible
        }

        ElidedText {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, Math.max(110, header.width - 40 - subtitle.implicitWidth - cancel.width - 14 - 40))
            text: header.state_.controller.operationDescription
            font: Typography.body
            color: WarmPalette.secondary
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        ActionButton {
            id: cancel

            anchors.verticalCenter: parent.verticalCenter
            implicitHeight: 26
            font: Typography.name
            text: qsTr("Cancel")
            enabled: header.state_.controller.canCancelOperation
            onClicked: header.state_.controller.cancelOperation()
        }
    }

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
    }
}
