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
        anchors.right: operation.visible ? operation.left : parent.right
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

    Loader {
        id: operation

        // Named by its file, so that the first frame, in which nothing is removed yet, does without it.
        readonly property bool wanted: header.viewState.windowShown || visible

        function load() {
            if (wanted && status === Loader.Null)
                setSource("OperationStatus.qml", {
                    viewState: header.viewState,
                    room: Qt.binding(() => header.width - 40 - 40),
                    subtitleRoom: Qt.binding(() => subtitle.implicitWidth)
                });
        }

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: subtitle.verticalCenter
        visible: header.viewState.controller.isBusy
        onWantedChanged: load()
        onStatusChanged: if (status === Loader.Error) header.viewState.reportFailedPart(source)
        Component.onCompleted: load()
    }

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
    }
}
