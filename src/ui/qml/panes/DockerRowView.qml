import QtQuick
import Zentrill

// One line of the Docker pane: a heading, a remark, a container or an image.
Loader {
    id: line

    required property int index
    required property RecordList list
    // Which of the views below shows it.
    required property string view
    required property string name
    required property string detail
    required property string status
    required property string usageText
    required property bool inUse
    required property ContentViewState viewState

    readonly property bool current: ListView.isCurrentItem

    focus: current
    sourceComponent: ({ heading, notice, warning, empty, container, image })[view]
    // Wherever in the row the focus is, the arrow keys go on from this row.
    onActiveFocusChanged: if (activeFocus)
        list.currentIndex = index

    // A row that waits to be used again must not be found by an assistive tool.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    Component {
        id: heading

        Label {
            topPadding: line.index === 0 ? 0 : 16
            bottomPadding: 4
            text: line.name
            font: Typography.section
            color: WarmPalette.paper
            Accessible.role: Accessible.Heading
        }
    }

    Component {
        id: notice

        Label {
            bottomPadding: 4
            text: line.name
            font: Typography.detail
            color: WarmPalette.secondary
            wrapMode: Text.Wrap
        }
    }

    Component {
        id: warning

        Item {
            implicitHeight: label.implicitHeight + 8
            Accessible.role: Accessible.AlertMessage
            Accessible.name: line.name

            Icon {
                id: sign

                y: 1
                name: "exclamationmark.triangle.fill"
                size: 12
                tint: WarmPalette.copper
            }

            PlainText {
                id: label

                anchors.left: sign.right
                anchors.leftMargin: 8
                anchors.right: parent.right
                text: line.name
                font: Typography.detail
                color: WarmPalette.copper
                wrapMode: Text.Wrap
            }
        }
    }

    Component {
        id: empty

        Rectangle {
            implicitHeight: 56
            radius: 9
            color: WarmPalette.row
            Accessible.role: Accessible.StaticText
            Accessible.name: line.name

            PlainText {
                anchors.centerIn: parent
                text: line.name
                font: Typography.name
                color: WarmPalette.secondary
            }
        }
    }

    Component {
        id: container

        ContainerRowView {
            focus: true
            index: line.index
            list: line.list
            current: line.current
            title: line.name
            image: line.detail
            status: line.status
            running: line.inUse
            actionsEnabled: line.viewState.acceptsRequests
            onStopRequested: line.viewState.stopContainer(line.index)
            onDeleteRequested: line.viewState.requestContainerRemoval(line.index)
        }
    }

    Component {
        id: image

        DockerImageRowView {
            focus: true
            index: line.index
            list: line.list
            current: line.current
            title: line.name
            shortId: line.detail
            size: line.status
            usageText: line.usageText
            inUse: line.inUse
            actionsEnabled: line.viewState.acceptsRequests
            onRemoveRequested: line.viewState.requestImageRemoval(line.index)
        }
    }
}
