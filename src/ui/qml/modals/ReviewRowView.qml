import QtQuick
import Zentrill

// One line of a review: a tool, a path with its fate and size, or a sentence.
Item {
    id: row

    required property int index
    required property RecordList list
    required property string kind
    required property string fate
    required property string label
    required property string sizeText
    required property string reason

    // Whether more entries can be listed where there are more.
    required property bool expandable

    readonly property bool current: ListView.isCurrentItem
    readonly property bool expands: kind === "more" && expandable
    readonly property bool isPath: kind === "item" || kind === "entry"
    readonly property color fateColor: fate === "goes" ? WarmPalette.danger
                                     : fate === "fails" || fate === "partly" ? WarmPalette.copper : WarmPalette.secondary

    signal moreWanted

    // The keyboard goes on with what comes in this row's place.
    function expand() {
        list.takeFocus(Math.max(0, index - 1));
        moreWanted();
    }

    implicitHeight: kind === "heading" ? 40 : kind === "item" ? 32 : kind === "remark" ? words.implicitHeight + 12 : 24
    focus: current
    Accessible.role: kind === "heading" ? Accessible.Heading : Accessible.ListItem
    Accessible.name: label
    Accessible.description: [reason, sizeText].filter(text => text !== "").join(", ")
    Accessible.focusable: true
    Accessible.focused: activeFocus

    Keys.onPressed: event => {
        event.accepted = expands && !event.isAutoRepeat && [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter].includes(event.key);
        if (event.accepted)
            expand();
    }

    onActiveFocusChanged: if (activeFocus)
        list.currentIndex = index

    // A row that waits to be used again must not be found by an assistive tool.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    TapHandler {
        enabled: !row.expands
        onTapped: row.list.takeFocus(row.index)
    }

    // All of the row can be pressed.
    Loader {
        id: more

        anchors.fill: parent
        active: row.expands

        sourceComponent: Pressable {
            activeFocusOnTab: false
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("List More")
            onClicked: row.expand()
        }
    }

    Rectangle {
        id: plate

        anchors.fill: parent
        radius: 6
        color: row.kind === "item" ? WarmPalette.faint(WarmPalette.paper, 0.045)
             : more.item && more.item.hovered ? WarmPalette.faint(WarmPalette.paper, 0.08) : "transparent"
        border.width: row.activeFocus && row.list.marksFocus ? 2 : 0
        border.color: WarmPalette.faint(WarmPalette.copper, 0.9)
    }

    ElidedText {
        id: path

        readonly property real indent: row.kind === "entry" || row.kind === "more" ? 28 : 10

        x: indent
        visible: row.kind !== "remark"
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: row.kind === "heading" ? 6 : 0
        width: Math.max(80, why.x - x - 14)
        reached: row.activeFocus && row.list.marksFocus
        text: row.label
        font: row.kind === "heading" ? Typography.name : row.kind === "item" ? Typography.control : Typography.detail
        color: row.kind === "item" || row.kind === "heading" ? WarmPalette.paper
             : row.expands ? WarmPalette.copper : row.kind === "more" ? WarmPalette.tertiary : WarmPalette.secondary
        elide: row.isPath ? Text.ElideMiddle : Text.ElideRight
    }

    ElidedText {
        id: why

        x: Math.round(row.width - 96 - width)
        visible: row.kind !== "remark"
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, Math.round(row.width * 0.42))
        reached: row.activeFocus && row.list.marksFocus && !path.truncated
        text: row.reason
        font: Typography.caption
        color: row.fateColor
    }

    PlainText {
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        visible: row.kind !== "remark"
        text: row.sizeText
        font: Typography.caption
        color: row.kind === "item" ? WarmPalette.paper : WarmPalette.secondary
    }

    PlainText {
        id: words

        x: 10
        width: row.width - 20
        anchors.verticalCenter: parent.verticalCenter
        visible: row.kind === "remark"
        text: visible ? row.label : ""
        font: Typography.detail
        color: WarmPalette.secondary
        wrapMode: Text.Wrap
    }
}
