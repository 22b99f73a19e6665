import QtQuick
import Zentrill

// The orders of a list side by side, one of them chosen. They are one tab stop; the arrow keys choose.
Row {
    id: choice

    required property ListStripState strip

    function step(by: int) {
        const row = Math.max(0, Math.min(orders.count - 1, strip.order + by));
        // In this order: only the chosen one is a tab stop, and what has the focus has to stay one.
        orders.itemAt(row).forceActiveFocus(Qt.TabFocusReason);
        strip.order = row;
    }

    spacing: 2
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Order")

    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Repeater {
        id: orders

        model: choice.strip.orderNames

        Pressable {
            id: order

            required property int index
            required property string modelData
            readonly property bool chosen: choice.strip.order === index

            implicitWidth: Math.ceil(label.implicitWidth + 16)
            implicitHeight: 26
            text: modelData
            activeFocusOnTab: chosen || activeFocus
            Accessible.role: Accessible.RadioButton
            Accessible.name: modelData
            Accessible.checkable: true
            Accessible.checked: chosen
            Accessible.onPressAction: click()
            onClicked: choice.strip.order = index

            Rectangle {
                anchors.fill: parent
                radius: 6
                color: order.chosen ? WarmPalette.selected : order.hovered ? WarmPalette.row : "transparent"
            }

            PlainText {
                id: label

                anchors.centerIn: parent
                text: order.modelData
                font: Typography.rowControl
                color: order.chosen ? WarmPalette.paper : WarmPalette.tertiary
            }

            FocusRing {
                visible: order.activeFocus && KeyboardUse.current
            }
        }
    }
}
