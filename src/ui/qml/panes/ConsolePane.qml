import QtQuick
import Zentrill

Item {
    id: pane

    required property ContentViewState viewState
    // What takes the focus where nothing else can.
    readonly property Item entrance: list

    readonly property bool empty: list.count === 0
    readonly property LineSearch search: viewState.logSearch

    function leaveSearch() {
        list.forceActiveFocus(Qt.OtherFocusReason);
        search.searching = false;
    }

    function beginSearch() {
        search.searching = true;
        field.item.forceActiveFocus(Qt.ShortcutFocusReason);
        field.item.selectAll();
    }

    Connections {
        target: pane.viewState
        enabled: pane.visible

        function onFindRequested() {
            pane.beginSearch();
        }
    }

    Connections {
        target: pane.search

        function onShown(line) {
            list.following = false;
            list.positionViewAtIndex(pane.viewState.logs.reveal(line), ListView.Contain);
        }
    }

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

    Label {
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.leftMargin: 20
        anchors.topMargin: 16
        visible: pane.empty
        text: qsTr("Awaiting activity...")
        font: Typography.consoleEmpty
        color: WarmPalette.tertiary
    }

    Item {
        id: bar

        readonly property real lineHeight: 54
        // Where the search leaves too little room beside it, it has a line of its own.
        readonly property bool stacked: pane.search.searching && width < 740

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: stacked ? lineHeight + 40 : lineHeight

        Hairline {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
        }

        Label {
            anchors.left: parent.left
            anchors.leftMargin: 20
            anchors.verticalCenter: buttons.verticalCenter
            width: (bar.stacked ? buttons.x : searchLine.x) - x - 10
            elide: Text.ElideRight
            text: pane.search.needle === "" ? pane.viewState.logCountText : pane.search.countText
            font: Typography.caption
            color: WarmPalette.tertiary
        }

        Row {
            id: searchLine

            x: bar.stacked ? 20 : buttons.x - buttons.spacing - width
            height: bar.lineHeight
            spacing: 8

            Loader {
                id: field

                anchors.verticalCenter: parent.verticalCenter
                width: bar.stacked ? bar.width - 40 - 3 * searchLine.spacing - upward.width - downward.width - toggle.width : 140
                active: pane.search.searching
                visible: active
                sourceComponent: SearchField {
                    name: qsTr("Search the log")
                    search: pane.search
                    onAbandoned: pane.leaveSearch()
                    onNext: pane.search.next()
                    onPrevious: pane.search.previous()
                }
            }

            ActionButton {
                id: upward

                anchors.verticalCenter: parent.verticalCenter
                visible: pane.search.searching
                sidePadding: 9
                text: "↑"
                tip: Shortcuts.findPreviousKeys
                enabled: pane.search.findsAny
                Accessible.name: qsTr("Previous Line Found")
                onClicked: pane.search.previous()
            }

            ActionButton {
                id: downward

                anchors.verticalCenter: parent.verticalCenter
                visible: pane.search.searching
                sidePadding: 9
                text: "↓"
                tip: Shortcuts.findNextKeys
                enabled: pane.search.findsAny
                Accessible.name: qsTr("Next Line Found")
                onClicked: pane.search.next()
            }

            ActionButton {
                id: toggle

                anchors.verticalCenter: parent.verticalCenter
                visible: !pane.empty || pane.search.searching
                text: pane.search.searching ? qsTr("Done") : qsTr("Search")
                tip: pane.search.searching ? Shortcuts.leaveKeys : Shortcuts.findKeys
                onClicked: pane.search.searching ? pane.leaveSearch() : pane.beginSearch()
            }
        }

        Row {
            id: buttons

            anchors.right: parent.right
            anchors.rightMargin: 20
            anchors.bottom: parent.bottom
            height: bar.lineHeight
            spacing: 8

            ActionButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: !pane.empty && !list.following
                text: qsTr("Newest Line")
                onClicked: list.followNewest()
            }

            ActionButton {
                anchors.verticalCenter: parent.verticalCenter
                iconName: "trash"
                text: qsTr("Clear Console")
                enabled: !pane.empty
                onClicked: pane.viewState.controller.clearLogs()
            }
        }
    }
}
