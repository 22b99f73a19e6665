import QtQuick
import Zentrill

// At the foot of a list: what there is, the search field once it is wanted, and the order.
Item {
    id: bar

    required property ListStripState strip
    // The name of the search field.
    required property string searchName
    // What gets the focus when the search field is left, and stands at its first row when it is left for it.
    required property RecordList list

    readonly property real lineHeight: 54
    // Where the search field leaves too little room beside it, it has a line of its own.
    readonly property bool stacked: strip.searching && width < 660

    function search() {
        strip.searching = true;
        field.enter();
    }

    function leave() {
        list.forceActiveFocus(Qt.OtherFocusReason);
        strip.searching = false;
    }

    implicitHeight: stacked ? lineHeight + 40 : lineHeight
    visible: strip.shown

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
    }

    Label {
        id: summary

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.verticalCenter: orders.verticalCenter
        width: Math.min(implicitWidth, (bar.stacked ? orders.x : searchLine.x) - x - 6)
        text: bar.strip.summary
        elide: Text.ElideRight
        font: Typography.caption
        color: WarmPalette.secondary
        // What it can say more is a reason to come here with the keyboard.
        activeFocusOnTab: bar.strip.detail !== "" || activeFocus
        Accessible.description: bar.strip.detail

        HoverHandler {
            id: hover
        }

        FocusRing {
            anchors.margins: -5
            visible: summary.activeFocus && KeyboardUse.current
        }

        TipLoader {
            text: summary.truncated ? [summary.text, bar.strip.detail].join("\n").trim() : bar.strip.detail
            completes: true
            wanted: text !== "" && (hover.hovered || summary.activeFocus && KeyboardUse.current)
        }
    }

    Row {
        id: searchLine

        x: bar.stacked ? 20 : orders.x - 10 - width
        height: bar.lineHeight
        spacing: 10

        Loader {
            id: field

            function enter() {
                item.forceActiveFocus(Qt.ShortcutFocusReason);
                item.selectAll();
            }

            anchors.verticalCenter: parent.verticalCenter
            width: bar.stacked ? bar.width - 40 - searchLine.spacing - toggle.width : implicitWidth
            active: bar.strip.searching
            visible: active

            sourceComponent: SearchField {
                name: bar.searchName
                search: bar.strip
                onAbandoned: bar.leave()
                onNext: {
                    bar.list.forceActiveFocus(Qt.TabFocusReason);
                    bar.list.moveTo(0, 1);
                }
            }
        }

        ActionButton {
            id: toggle

            anchors.verticalCenter: parent.verticalCenter
            text: bar.strip.searching ? qsTr("Show All") : qsTr("Search")
            tip: bar.strip.searching ? Shortcuts.leaveKeys : Shortcuts.findKeys
            onClicked: bar.strip.searching ? bar.leave() : bar.search()
        }
    }

    OrderChoice {
        id: orders

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Math.round((bar.lineHeight - height) / 2)
        strip: bar.strip
    }
}
