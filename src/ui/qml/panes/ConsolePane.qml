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

        function onShown(row) {
            list.following = false;
            list.positionViewAtIndex(row, ListView.Contain);
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
            anchors.right: buttons.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            elide: Text.ElideRight
            text: pane.search.needle === "" ? pane.viewState.logCountText : pane.search.countText
            textFormat: Text.PlainText
            font: Typography.caption
            color: WarmPalette.tertiary
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Row {
            id: buttons

            anchors.right: parent.right
            anchors.rightMargin: 20
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            Loader {
                id: field

                active: pane.search.searching
                visible: active
                sourceComponent: SearchField {
                    width: 140
                    name: qsTr("Search the log")
                    text: pane.search.needle
                    onTextChanged: pane.search.needle = text
                    onAbandoned: pane.leaveSearch()
                    onNext: pane.search.next()
                    onPrevious: pane.search.previous()
                }
            }

            ActionButton {
                visible: pane.search.searching
                sidePadding: 9
                text: "↑"
                tip: Shortcuts.findPreviousKeys
                enabled: pane.search.findsAny
                Accessible.name: qsTr("Previous Line Found")
                onClicked: pane.search.previous()
            }

            ActionButton {
                visible: pane.search.searching
                sidePadding: 9
                text: "↓"
                tip: Shortcuts.findNextKeys
                enabled: pane.search.findsAny
                Accessible.name: qsTr("Next Line Found")
                onClicked: pane.search.next()
            }

            ActionButton {
                visible: !pane.empty || pane.search.searching
                text: pane.search.searching ? qsTr("Done") : qsTr("Search")
                tip: pane.search.searching ? Shortcuts.leaveKeys : Shortcuts.findKeys
                onClicked: pane.search.searching ? pane.leaveSearch() : pane.beginSearch()
            }

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
